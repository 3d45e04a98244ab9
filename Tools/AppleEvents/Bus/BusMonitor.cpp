#include "BusMonitor.h"

#include <Formats/EventTable.h>
#include <Platform/Bus/BusNames.h>
#include <Platform/Bus/ParameterCodec.h>

#include <cstring>
#include <string_view>

namespace appleevents {

using platform::adoptMessage;
using platform::BusError;
using platform::Connection;
using platform::Message;
using platform::shareMessage;

namespace {

constexpr char driver[] = "org.freedesktop.DBus";
constexpr char driverPath[] = "/org/freedesktop/DBus";
// Above what any receiver takes.
constexpr std::size_t largestFile = std::size_t{1024} * 1024 * 1024;

std::string inWords(int error) { return std::strerror(-error); }

// The reply of the bus itself; null where there is none.
Message ask(sd_bus *bus, const char *method, const char *argument) {
  sd_bus_message *reply = nullptr;
  BusError error;
  const int result =
      argument == nullptr
          ? sd_bus_call_method(bus, driver, driverPath, driver, method, error.out(), &reply, "")
          : sd_bus_call_method(bus, driver, driverPath, driver, method, error.out(), &reply, "s",
                               argument);
  return result < 0 ? nullptr : adoptMessage(reply);
}

// A connection that gets what is meant for others.
int openMonitor(sd_bus *bus, Connection &monitor) {
  const char *address = nullptr;
  sd_bus *opened = nullptr;
  int result = sd_bus_get_address(bus, &address);
  if (result >= 0) {
    result = sd_bus_new(&opened);
    monitor.reset(opened);
  }
  if (result >= 0) {
    sd_bus_set_monitor(opened, 1);
    sd_bus_set_bus_client(opened, 1);
    sd_bus_negotiate_fds(opened, 1);
    result = sd_bus_set_address(opened, address);
  }
  if (result >= 0) {
    result = sd_bus_start(opened);
  }
  if (result < 0) {
    return result;
  }
  sd_bus_message *call = nullptr;
  result = sd_bus_message_new_method_call(opened, &call, driver, driverPath,
                                          "org.freedesktop.DBus.Monitoring", "BecomeMonitor");
  if (result < 0) {
    return result;
  }
  const Message owned = adoptMessage(call);
  sd_bus_message_append(call, "asu", 4, "type='method_call',interface='org.korvo.AppleEvents1'",
                        "type='method_return'", "type='error'",
                        "type='signal',sender='org.freedesktop.DBus',member='NameOwnerChanged'", 0);
  return sd_bus_call(opened, call, 0, nullptr, nullptr);
}

RecordedParameter recorded(const platform::Parameter &parameter) {
  const auto bytes = parameter.data.view();
  return {parameter.keyword, parameter.type,
          std::string(reinterpret_cast<const char *>(bytes.data()), bytes.size()),
          parameter.data.memoryFile() != nullptr};
}

}  // namespace

std::expected<std::unique_ptr<BusMonitor>, std::string> BusMonitor::open() {
  std::unique_ptr<BusMonitor> monitor(new BusMonitor());
  sd_bus *bus = nullptr;
  if (const int result = sd_bus_open_user(&bus); result < 0) {
    return std::unexpected("there is no session bus: " + inWords(result));
  }
  monitor->bus_.reset(bus);
  if (const int result = openMonitor(bus, monitor->monitor_); result < 0) {
    return std::unexpected("the session bus lets nobody look on: " + inWords(result));
  }
  monitor->learnOwners();
  return monitor;
}

// Who comes later is seen to come.
void BusMonitor::learnOwners() {
  const Message names = ask(bus_.get(), "ListNames", nullptr);
  const char *name = nullptr;
  if (names == nullptr || sd_bus_message_enter_container(names.get(), 'a', "s") < 0) {
    return;
  }
  while (sd_bus_message_read_basic(names.get(), 's', &name) > 0) {
    const auto signature = platform::signatureInBusName(name);
    const Message answer = signature ? ask(bus_.get(), "GetNameOwner", name) : nullptr;
    const char *owner = nullptr;
    if (answer != nullptr && sd_bus_message_read_basic(answer.get(), 's', &owner) > 0) {
      signatures_[owner] = *signature;
    }
  }
}

int BusMonitor::descriptor() const { return sd_bus_get_fd(monitor_.get()); }

bool BusMonitor::process(const Receiver &record, const Complaint &complain) {
  for (;;) {
    sd_bus_message *arrived = nullptr;
    const int result = sd_bus_process(monitor_.get(), &arrived);
    if (result <= 0) {
      return result == 0;
    }
    if (arrived != nullptr) {
      const Message message = adoptMessage(arrived);
      if (sd_bus_message_is_signal(arrived, "org.freedesktop.DBus.Local", "Disconnected") > 0) {
        return false;
      }
      handle(message, record, complain);
    }
  }
}

bool BusMonitor::askForEnd() {
  const Message answer = ask(bus_.get(), "GetId", nullptr);
  return answer != nullptr && sd_bus_message_get_reply_cookie(answer.get(), &lastQuestion_) >= 0;
}

formats::FourCharacterCode BusMonitor::signatureOf(const char *name) const {
  if (name == nullptr) {
    return 0;
  }
  if (const auto named = platform::signatureInBusName(name)) {
    return *named;
  }
  const auto known = signatures_.find(std::string_view(name));
  return known == signatures_.end() ? 0 : known->second;
}

void BusMonitor::ownerChanged(sd_bus_message *message) {
  const char *name = nullptr;
  const char *before = nullptr;
  const char *now = nullptr;
  if (sd_bus_message_read(message, "sss", &name, &before, &now) > 0 && *now != '\0') {
    if (const auto signature = platform::signatureInBusName(name)) {
      signatures_[now] = *signature;
    }
  }
}

void BusMonitor::handle(const Message &message, const Receiver &record, const Complaint &complain) {
  using Kind = RecordedMessage::Kind;
  sd_bus_message *const raw = message.get();
  if (sd_bus_message_is_signal(raw, driver, "NameOwnerChanged") > 0) {
    ownerChanged(raw);
    return;
  }
  std::uint64_t question = 0;
  const char *const to = sd_bus_message_get_destination(raw);
  const char *self = nullptr;
  if (lastQuestion_ != 0 && to != nullptr && sd_bus_get_unique_name(bus_.get(), &self) >= 0 &&
      std::strcmp(to, self) == 0 && sd_bus_message_get_reply_cookie(raw, &question) >= 0) {
    hasSeenEnd_ = hasSeenEnd_ || question == lastQuestion_;
    return;
  }
  Kind kind = Kind::reply;
  if (sd_bus_message_is_method_call(raw, platform::interfaceName, "Send") > 0) {
    kind = Kind::event;
  } else if (sd_bus_message_is_method_call(raw, platform::interfaceName, "Activate") > 0) {
    kind = Kind::activation;
  } else if (sd_bus_message_is_method_error(raw, nullptr) > 0) {
    kind = Kind::error;
  }
  const bool isAnswer = kind == Kind::reply || kind == Kind::error;
  if (isAnswer && (to == nullptr || sd_bus_message_get_reply_cookie(raw, &question) < 0 ||
                   !waiting_.contains({to, question}))) {
    return;
  }
  if (auto made = messageOf(message, kind, complain)) {
    record(*std::move(made));
  }
}

std::optional<RecordedMessage> BusMonitor::messageOf(const Message &message,
                                                     RecordedMessage::Kind kind,
                                                     const Complaint &complain) {
  using Kind = RecordedMessage::Kind;
  RecordedMessage made{.kind = kind};
  made.time = std::chrono::duration_cast<std::chrono::microseconds>(
      std::chrono::steady_clock::now() - beginning_);
  if (kind == Kind::event || kind == Kind::activation) {
    made.from = signatureOf(sd_bus_message_get_sender(message.get()));
    made.to = signatureOf(sd_bus_message_get_destination(message.get()));
  }
  if (kind == Kind::activation) {
    return made;
  }
  if (kind == Kind::event && !beginEvent(message.get(), made)) {
    complain("an event was passed over: it is none of the right shape");
    return std::nullopt;
  }
  if (kind != Kind::event) {
    std::uint64_t cookie = 0;
    sd_bus_message_get_reply_cookie(message.get(), &cookie);
    const auto call = waiting_.find({sd_bus_message_get_destination(message.get()), cookie});
    made.number = call->second;
    waiting_.erase(call);
  }
  if (kind == Kind::error) {
    made.status = platform::statusOfError(sd_bus_message_get_error(message.get())->name);
    return made;
  }
  const auto parameters = platform::readParameters(message, largestFile);
  if (!parameters) {
    complain("the data of event " + std::to_string(made.number) +
             " cannot be read and was left out: status " + std::to_string(parameters.error()));
    return made;
  }
  for (const platform::Parameter &parameter : *parameters) {
    made.parameters.push_back(recorded(parameter));
  }
  return made;
}

bool BusMonitor::beginEvent(sd_bus_message *message, RecordedMessage &event) {
  const char *const sender = sd_bus_message_get_sender(message);
  std::uint64_t cookie = 0;
  if (sender == nullptr || sd_bus_message_get_cookie(message, &cookie) < 0 ||
      !platform::readNumber(message, event.eventClass) ||
      !platform::readNumber(message, event.eventID)) {
    return false;
  }
  event.number = ++events_;
  event.wantsReply = sd_bus_message_get_expect_reply(message) > 0;
  if (event.wantsReply) {
    waiting_[{sender, cookie}] = event.number;
  }
  return true;
}

}  // namespace appleevents
