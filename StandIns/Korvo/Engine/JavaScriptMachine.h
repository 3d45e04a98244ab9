// A JavaScript machine without a web page: JavaScriptCore with one of our scripts loaded.
//
// Starting one costs a few milliseconds and its script some tens, so a machine is kept.
// It belongs to the thread that made it. Errors come back as one line of text; no
// exception of either language crosses the border.
#pragma once

#include "WorkLimit.h"

#include <JavaScriptCore/JavaScript.h>

#include <expected>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace korvo::engine {

class JavaScriptMachine {
 public:
  using Text = std::expected<std::u16string, std::string>;
  // Answers a script's question with a text, or with why it cannot.
  using TextFunction = std::function<Text(std::u16string_view)>;

  // The script defines the global object "korvo", whose functions call() calls.
  static std::expected<std::unique_ptr<JavaScriptMachine>, std::string> start(
      std::string_view script);
  ~JavaScriptMachine();
  JavaScriptMachine(const JavaScriptMachine &) = delete;
  JavaScriptMachine &operator=(const JavaScriptMachine &) = delete;

  // Values live as long as the machine's collector finds them: in an object of the
  // machine, or in a local variable of the C++ functions that are running.
  // A call that takes more than the limit ends with an error. What it left half done nobody knows,
  // so the machine is spent then, only fit to be destroyed.
  std::expected<JSObjectRef, std::string> call(const char *function,
                                               std::span<const JSValueRef> arguments,
                                               std::optional<WorkLimit> limit = std::nullopt);
  bool isSpent() const { return isSpent_; }

  // Frees what no script can reach any more: some tens of milliseconds. Left to itself the machine
  // does so only when its heap has become several times as large as what it needs.
  void collectGarbage() const;

  JSValueRef text(std::u16string_view text) const;
  JSValueRef number(double value) const;
  JSObjectRef makeObject() const;
  // An array with nothing in it that is the object's property of that name.
  JSObjectRef makeArray(JSObjectRef object, const char *name) const;
  void set(JSObjectRef object, const char *name, JSValueRef value) const;
  void append(JSObjectRef array, std::size_t index, JSValueRef value) const;
  // A function for scripts to call with one text. It must outlive the value.
  JSObjectRef makeFunction(const TextFunction &function) const;

  // What is not there, or of another kind, reads as empty or 0.
  JSValueRef property(JSObjectRef object, const char *name) const;
  JSObjectRef objectProperty(JSObjectRef object, const char *name) const;
  std::size_t length(JSObjectRef array) const;
  JSValueRef element(JSObjectRef array, std::size_t index) const;
  std::u16string readText(JSValueRef value) const;
  double readNumber(JSValueRef value) const;

 private:
  JavaScriptMachine();
  std::string describe(JSValueRef exception) const;

  bool isSpent_ = false;
  JSGlobalContextRef context_;
  JSClassRef textFunctionClass_;
};

}  // namespace korvo::engine
