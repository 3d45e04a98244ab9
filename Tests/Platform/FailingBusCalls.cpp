#include "FailingBusCalls.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <systemd/sd-bus.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>
#include <cstdint>
#include <thread>
#include <type_traits>
#include <utility>

namespace platform_test {

namespace {

BusFault *current = nullptr;
BusFlood *currentFlood = nullptr;

int errorOf(const char *call) { return current == nullptr ? 0 : current->errorOf(call); }

template <typename Function>
Function *next(const char *name) {
  return reinterpret_cast<Function *>(dlsym(RTLD_NEXT, name));
}

// Fails as the bus library does, by a negative number, or calls the function of that name and type.
template <typename... Arguments>
int onBus(const char *name, int (*)(Arguments...), std::type_identity_t<Arguments>... arguments) {
  const int error = errorOf(name);
  return error != 0 ? -error : next<int(Arguments...)>(name)(arguments...);
}

}  // namespace

BusFault::BusFault() { current = this; }

BusFault::BusFault(std::string function, std::size_t number, int error)
    : function_(std::move(function)), number_(number), error_(error) {
  current = this;
}

BusFault::BusFault(std::size_t number, int error) : number_(number), error_(error) {
  current = this;
}

BusFault::~BusFault() { current = nullptr; }

bool BusFault::strikes(const std::string &function) const {
  if (function_.empty()) {
    return callsOfAll_ >= number_;
  }
  const auto calls = calls_.find(function);
  return function == function_ && (calls == calls_.end() ? 0 : calls->second) == number_;
}

int BusFault::errorOf(const char *function) {
  const bool isStruck = error_ != 0 && strikes(function);
  ++calls_[function];
  ++callsOfAll_;
  hasStruck_ = hasStruck_ || isStruck;
  return isStruck ? error_ : 0;
}

BusFlood::BusFlood(std::chrono::microseconds timeForEach) : timeForEach_(timeForEach) {
  currentFlood = this;
}

BusFlood::~BusFlood() { currentFlood = nullptr; }

bool BusFlood::takeOne() {
  if (count_ == 2000) {
    return false;
  }
  std::this_thread::sleep_for(timeForEach_);
  ++count_;
  return true;
}

#pragma GCC visibility push(default)
extern "C" {

int sd_bus_open_user_with_description(sd_bus **bus, const char *description) {
  return onBus(__func__, sd_bus_open_user_with_description, bus, description);
}
int sd_bus_get_unique_name(sd_bus *bus, const char **name) {
  return onBus(__func__, sd_bus_get_unique_name, bus, name);
}
int sd_bus_request_name(sd_bus *bus, const char *name, std::uint64_t flags) {
  return onBus(__func__, sd_bus_request_name, bus, name, flags);
}
int sd_bus_release_name(sd_bus *bus, const char *name) {
  return onBus(__func__, sd_bus_release_name, bus, name);
}
int sd_bus_add_match(sd_bus *bus, sd_bus_slot **slot, const char *match,
                     sd_bus_message_handler_t callback, void *self) {
  return onBus(__func__, sd_bus_add_match, bus, slot, match, callback, self);
}
int sd_bus_add_object_vtable(sd_bus *bus, sd_bus_slot **slot, const char *path,
                             const char *interface, const sd_bus_vtable *table, void *self) {
  return onBus(__func__, sd_bus_add_object_vtable, bus, slot, path, interface, table, self);
}
int sd_bus_call_async(sd_bus *bus, sd_bus_slot **slot, sd_bus_message *message,
                      sd_bus_message_handler_t callback, void *self, std::uint64_t timeOut) {
  return onBus(__func__, sd_bus_call_async, bus, slot, message, callback, self, timeOut);
}
int sd_bus_send(sd_bus *bus, sd_bus_message *message, std::uint64_t *cookie) {
  return onBus(__func__, sd_bus_send, bus, message, cookie);
}
int sd_bus_flush(sd_bus *bus) { return onBus(__func__, sd_bus_flush, bus); }
int sd_bus_process(sd_bus *bus, sd_bus_message **message) {
  if (currentFlood != nullptr && currentFlood->takeOne()) {
    return 1;
  }
  return onBus(__func__, sd_bus_process, bus, message);
}
int sd_bus_wait(sd_bus *bus, std::uint64_t timeOut) {
  return onBus(__func__, sd_bus_wait, bus, timeOut);
}
int sd_bus_get_events(sd_bus *bus) { return onBus(__func__, sd_bus_get_events, bus); }
int sd_bus_get_timeout(sd_bus *bus, std::uint64_t *due) {
  return onBus(__func__, sd_bus_get_timeout, bus, due);
}
int sd_bus_message_new_method_call(sd_bus *bus, sd_bus_message **message, const char *destination,
                                   const char *path, const char *interface, const char *member) {
  return onBus(__func__, sd_bus_message_new_method_call, bus, message, destination, path, interface,
               member);
}
int sd_bus_message_new_method_return(sd_bus_message *call, sd_bus_message **message) {
  return onBus(__func__, sd_bus_message_new_method_return, call, message);
}
int sd_bus_message_set_auto_start(sd_bus_message *message, int isOn) {
  return onBus(__func__, sd_bus_message_set_auto_start, message, isOn);
}
int sd_bus_message_set_expect_reply(sd_bus_message *message, int isOn) {
  return onBus(__func__, sd_bus_message_set_expect_reply, message, isOn);
}
int sd_bus_message_open_container(sd_bus_message *message, char type, const char *contents) {
  return onBus(__func__, sd_bus_message_open_container, message, type, contents);
}
int sd_bus_message_close_container(sd_bus_message *message) {
  return onBus(__func__, sd_bus_message_close_container, message);
}
int sd_bus_message_enter_container(sd_bus_message *message, char type, const char *contents) {
  return onBus(__func__, sd_bus_message_enter_container, message, type, contents);
}
int sd_bus_message_exit_container(sd_bus_message *message) {
  return onBus(__func__, sd_bus_message_exit_container, message);
}
int sd_bus_message_append_array(sd_bus_message *message, char type, const void *bytes,
                                std::size_t size) {
  return onBus(__func__, sd_bus_message_append_array, message, type, bytes, size);
}
int sd_bus_message_append_basic(sd_bus_message *message, char type, const void *value) {
  return onBus(__func__, sd_bus_message_append_basic, message, type, value);
}
int sd_bus_message_read_array(sd_bus_message *message, char type, const void **bytes,
                              std::size_t *size) {
  return onBus(__func__, sd_bus_message_read_array, message, type, bytes, size);
}
int sd_bus_message_read_basic(sd_bus_message *message, char type, void *value) {
  return onBus(__func__, sd_bus_message_read_basic, message, type, value);
}
int sd_bus_message_has_signature(sd_bus_message *message, const char *signature) {
  return onBus(__func__, sd_bus_message_has_signature, message, signature);
}

// Those with any number of arguments have a twin that takes a list of them.
int sd_bus_message_append(sd_bus_message *message, const char *types, ...) {
  if (const int error = errorOf(__func__); error != 0) {
    return -error;
  }
  va_list arguments;
  va_start(arguments, types);
  const int result = sd_bus_message_appendv(message, types, arguments);
  va_end(arguments);
  return result;
}
int sd_bus_message_read(sd_bus_message *message, const char *types, ...) {
  if (const int error = errorOf(__func__); error != 0) {
    return -error;
  }
  va_list arguments;
  va_start(arguments, types);
  const int result = sd_bus_message_readv(message, types, arguments);
  va_end(arguments);
  return result;
}
int sd_bus_reply_method_return(sd_bus_message *call, const char *types, ...) {
  if (const int error = errorOf(__func__); error != 0) {
    return -error;
  }
  va_list arguments;
  va_start(arguments, types);
  const int result = sd_bus_reply_method_returnv(call, types, arguments);
  va_end(arguments);
  return result;
}
int sd_bus_reply_method_errorf(sd_bus_message *call, const char *name, const char *format, ...) {
  if (const int error = errorOf(__func__); error != 0) {
    return -error;
  }
  va_list arguments;
  va_start(arguments, format);
  const int result = sd_bus_reply_method_errorfv(call, name, format, arguments);
  va_end(arguments);
  return result;
}
int sd_bus_call_method(sd_bus *bus, const char *destination, const char *path,
                       const char *interface, const char *member, sd_bus_error *error,
                       sd_bus_message **reply, const char *types, ...) {
  if (const int failure = errorOf(__func__); failure != 0) {
    return -failure;
  }
  va_list arguments;
  va_start(arguments, types);
  const int result = sd_bus_call_methodv(bus, destination, path, interface, member, error, reply,
                                         types, arguments);
  va_end(arguments);
  return result;
}

// The calls of the system that carry large data.
int memfd_create(const char *name, unsigned flags) {
  if (const int error = errorOf(__func__); error != 0) {
    errno = error;
    return -1;
  }
  return next<int(const char *, unsigned)>(__func__)(name, flags);
}

}  // extern "C"
#pragma GCC visibility pop

}  // namespace platform_test
