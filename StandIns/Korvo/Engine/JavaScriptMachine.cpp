#include "JavaScriptMachine.h"

#include <Formats/OneLine.h>
#include <Formats/Unicode.h>

#include <unistd.h>

#include <chrono>
#include <cmath>
#include <ctime>
#include <exception>
#include <fstream>
#include <mutex>

// Every JavaScriptCore exports these, and no public header declares them; null where a release has
// them no more. The public JSGarbageCollect only asks a run loop that this process does not run.
// The limit is of processor time, for each entry into the machine; the answer true ends the script.
extern "C" {
void JSSynchronousGarbageCollectForDebugging(JSContextRef context) __attribute__((weak));
void JSContextGroupSetExecutionTimeLimit(JSContextGroupRef group, double seconds,
                                         bool (*isToEnd)(JSContextRef context, void *data),
                                         void *data) __attribute__((weak));
void JSContextGroupClearExecutionTimeLimit(JSContextGroupRef group) __attribute__((weak));
int jsc_options_set_int(const char *option, int value) __attribute__((weak));
int jsc_options_set_size(const char *option, std::size_t value) __attribute__((weak));
}

namespace korvo::engine {

namespace {

// An owned JSString. The library's own conversions from and to UTF-8 drop what they
// cannot convert and stop at a NUL; so texts cross as UTF-16.
class OwnedString {
 public:
  explicit OwnedString(std::u16string_view text)
      : string_(JSStringCreateWithCharacters(reinterpret_cast<const JSChar *>(text.data()),
                                             text.size())) {}
  explicit OwnedString(JSStringRef string) : string_(string) {}
  explicit OwnedString(const char *ascii) : string_(JSStringCreateWithUTF8CString(ascii)) {}
  ~OwnedString() {
    if (string_ != nullptr) {
      JSStringRelease(string_);
    }
  }
  OwnedString(const OwnedString &) = delete;
  OwnedString &operator=(const OwnedString &) = delete;

  JSStringRef get() const { return string_; }
  std::u16string copy() const {
    if (string_ == nullptr) {
      return {};
    }
    const auto *units = reinterpret_cast<const char16_t *>(JSStringGetCharactersPtr(string_));
    return {units, JSStringGetLength(string_)};
  }

 private:
  JSStringRef string_;
};

JavaScriptMachine::Text answer(const JavaScriptMachine::TextFunction &function,
                               std::u16string_view question) {
  try {
    return function(question);
  } catch (const std::exception &error) {
    return std::unexpected(error.what());
  } catch (...) {
    return std::unexpected("unknown error");
  }
}

JSValueRef callTextFunction(JSContextRef context, JSObjectRef function, JSObjectRef /*receiver*/,
                            std::size_t argumentCount, const JSValueRef arguments[],
                            JSValueRef *exception) {
  const auto *native =
      static_cast<const JavaScriptMachine::TextFunction *>(JSObjectGetPrivate(function));
  const OwnedString question(
      argumentCount > 0 ? JSValueToStringCopy(context, arguments[0], exception) : nullptr);
  const auto text = answer(*native, question.copy());
  if (text) {
    return JSValueMakeString(context, OwnedString(std::u16string_view(*text)).get());
  }
  const OwnedString message(std::u16string_view(formats::decodeUTF8(text.error())));
  *exception = JSValueMakeString(context, message.get());
  return JSValueMakeUndefined(context);
}

// Processor time of this thread, on which the machine works.
std::chrono::nanoseconds timeOfThread() {
  timespec time{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

// What the process holds in memory, in bytes; 0 where the system does not say.
std::size_t residentBytes() {
  std::ifstream statistics("/proc/self/statm");
  std::size_t allPages = 0;
  std::size_t residentPages = 0;
  statistics >> allPages >> residentPages;
  return residentPages * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

// Looks, while a script runs, ten times a second whether it takes more than it may.
class Watch {
 public:
  Watch(JSContextRef context, std::optional<WorkLimit> limit)
      : group_(JSContextGetGroup(context)), limit_(limit) {
    if (limit_ && JSContextGroupSetExecutionTimeLimit != nullptr) {
      startTime_ = timeOfThread();
      startBytes_ = residentBytes();
      lookSoon();
    }
  }
  ~Watch() {
    if (limit_ && JSContextGroupClearExecutionTimeLimit != nullptr) {
      JSContextGroupClearExecutionTimeLimit(group_);
    }
  }
  Watch(const Watch &) = delete;
  Watch &operator=(const Watch &) = delete;

  // Why the script was ended; empty where it was not.
  const std::string &excess() const { return excess_; }

 private:
  static bool look(JSContextRef /*context*/, void *watch) {
    auto *self = static_cast<Watch *>(watch);
    self->lookSoon();
    return self->takesTooMuch();
  }

  // The machine asks once for each time that it is told to.
  void lookSoon() { JSContextGroupSetExecutionTimeLimit(group_, 0.1, look, this); }

  bool takesTooMuch() {
    if (timeOfThread() - startTime_ > limit_->time) {
      excess_ = "it takes more than " +
                std::to_string(std::chrono::floor<std::chrono::seconds>(limit_->time).count()) +
                " s of work";
    } else if (const std::size_t bytes = residentBytes();
               bytes > startBytes_ && bytes - startBytes_ > limit_->bytes) {
      excess_ = "it takes more than " + std::to_string(limit_->bytes >> 20U) + " MiB of memory";
    }
    return !excess_.empty();
  }

  JSContextGroupRef group_;
  std::optional<WorkLimit> limit_;
  std::chrono::nanoseconds startTime_{};
  std::size_t startBytes_ = 0;
  std::string excess_;
};

// The library lets garbage grow by a rule that knows the computer's memory: on one of more than
// 16 GiB to three times what is in use, or else to as much again. It is told of so much memory, in
// bytes, to be sparing everywhere. Told of less it takes more time for long documents, and hardly
// less memory.
constexpr std::size_t memoryToldOf = std::size_t{8} << 30U;

// How much a function runs before it is compiled as well as can be: a call counts some fifteen, a
// round of a loop one. The library waits for 1,000, as suits pages with much that runs once. Here
// all runs for each citation, and a first document takes a tenth less time.
constexpr int runningBeforeOptimizing = 150;

// Each for itself: a release may have lost one of them.
void tellOptions() {
  if (jsc_options_set_size != nullptr) {
    jsc_options_set_size("forceRAMSize", memoryToldOf);
  }
  if (jsc_options_set_int != nullptr) {
    jsc_options_set_int("thresholdForOptimizeAfterWarmUp", runningBeforeOptimizing);
  }
}

JSGlobalContextRef makeContext() {
  // Later its options are in memory that nobody may write to.
  static std::once_flag told;
  std::call_once(told, tellOptions);
  return JSGlobalContextCreate(nullptr);
}

}  // namespace

JavaScriptMachine::JavaScriptMachine() : context_(makeContext()) {
  JSClassDefinition definition = kJSClassDefinitionEmpty;
  definition.className = "TextFunction";
  definition.callAsFunction = callTextFunction;
  textFunctionClass_ = JSClassCreate(&definition);
}

JavaScriptMachine::~JavaScriptMachine() {
  JSClassRelease(textFunctionClass_);
  JSGlobalContextRelease(context_);
}

std::expected<std::unique_ptr<JavaScriptMachine>, std::string> JavaScriptMachine::start(
    std::string_view script) {
  std::unique_ptr<JavaScriptMachine> machine(new JavaScriptMachine);
  const OwnedString source(std::u16string_view(formats::decodeUTF8(script)));
  JSValueRef exception = nullptr;
  JSEvaluateScript(machine->context_, source.get(), nullptr, nullptr, 1, &exception);
  if (exception != nullptr) {
    return std::unexpected("the script does not load: " + machine->describe(exception));
  }
  return machine;
}

std::expected<JSObjectRef, std::string> JavaScriptMachine::call(
    const char *function, std::span<const JSValueRef> arguments, std::optional<WorkLimit> limit) {
  JSObjectRef script = objectProperty(JSContextGetGlobalObject(context_), "korvo");
  JSObjectRef callee = objectProperty(script, function);
  if (callee == nullptr || !JSObjectIsFunction(context_, callee)) {
    return std::unexpected(std::string("the script has no function ") + function);
  }
  Watch watch(context_, limit);
  JSValueRef exception = nullptr;
  JSValueRef result = JSObjectCallAsFunction(context_, callee, script, arguments.size(),
                                             arguments.data(), &exception);
  if (!watch.excess().empty()) {
    isSpent_ = true;
    return std::unexpected(watch.excess());
  }
  if (exception != nullptr) {
    return std::unexpected(describe(exception));
  }
  if (!JSValueIsObject(context_, result)) {
    return std::unexpected(std::string("the script's function gave no object: ") + function);
  }
  return JSValueToObject(context_, result, nullptr);
}

std::string JavaScriptMachine::describe(JSValueRef exception) const {
  std::u16string message;
  if (JSValueIsObject(context_, exception)) {
    message = readText(property(JSValueToObject(context_, exception, nullptr), "message"));
  }
  if (message.empty()) {
    message = OwnedString(JSValueToStringCopy(context_, exception, nullptr)).copy();
  }
  // An exception made without memory or stack may not even have words.
  return message.empty() ? "the script ran out of memory or stack"
                         : formats::inOneLine(formats::encodeUTF8(message));
}

void JavaScriptMachine::collectGarbage() const {
  if (JSSynchronousGarbageCollectForDebugging != nullptr) {
    JSSynchronousGarbageCollectForDebugging(context_);
  }
}

JSValueRef JavaScriptMachine::text(std::u16string_view text) const {
  return JSValueMakeString(context_, OwnedString(text).get());
}

JSValueRef JavaScriptMachine::number(double value) const {
  return JSValueMakeNumber(context_, value);
}

JSObjectRef JavaScriptMachine::makeObject() const {
  return JSObjectMake(context_, nullptr, nullptr);
}

JSObjectRef JavaScriptMachine::makeArray(JSObjectRef object, const char *name) const {
  JSObjectRef array = JSObjectMakeArray(context_, 0, nullptr, nullptr);
  set(object, name, array);
  return array;
}

void JavaScriptMachine::set(JSObjectRef object, const char *name, JSValueRef value) const {
  JSObjectSetProperty(context_, object, OwnedString(name).get(), value, kJSPropertyAttributeNone,
                      nullptr);
}

void JavaScriptMachine::append(JSObjectRef array, std::size_t index, JSValueRef value) const {
  JSObjectSetPropertyAtIndex(context_, array, static_cast<unsigned>(index), value, nullptr);
}

JSObjectRef JavaScriptMachine::makeFunction(const TextFunction &function) const {
  // Scripts only call it, so that it is never changed through this pointer.
  return JSObjectMake(context_, textFunctionClass_, const_cast<TextFunction *>(&function));
}

JSValueRef JavaScriptMachine::property(JSObjectRef object, const char *name) const {
  if (object == nullptr) {
    return JSValueMakeUndefined(context_);
  }
  JSValueRef value = JSObjectGetProperty(context_, object, OwnedString(name).get(), nullptr);
  return value != nullptr ? value : JSValueMakeUndefined(context_);
}

JSObjectRef JavaScriptMachine::objectProperty(JSObjectRef object, const char *name) const {
  JSValueRef value = property(object, name);
  return JSValueIsObject(context_, value) ? JSValueToObject(context_, value, nullptr) : nullptr;
}

std::size_t JavaScriptMachine::length(JSObjectRef array) const {
  return static_cast<std::size_t>(readNumber(property(array, "length")));
}

JSValueRef JavaScriptMachine::element(JSObjectRef array, std::size_t index) const {
  JSValueRef value =
      JSObjectGetPropertyAtIndex(context_, array, static_cast<unsigned>(index), nullptr);
  return value != nullptr ? value : JSValueMakeUndefined(context_);
}

std::u16string JavaScriptMachine::readText(JSValueRef value) const {
  if (!JSValueIsString(context_, value)) {
    return {};
  }
  return OwnedString(JSValueToStringCopy(context_, value, nullptr)).copy();
}

double JavaScriptMachine::readNumber(JSValueRef value) const {
  const bool readable = JSValueIsNumber(context_, value) || JSValueIsBoolean(context_, value);
  const double number = readable ? JSValueToNumber(context_, value, nullptr) : 0;
  return std::isfinite(number) ? number : 0;
}

}  // namespace korvo::engine
