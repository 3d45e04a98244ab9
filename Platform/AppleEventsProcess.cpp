#include "AppleEventsProcess.h"

#include <Platform/Bus/BusConnection.h>
#include <Platform/Bus/BusNames.h>
#include <Platform/Bus/EventReceiver.h>

#include <string>
#include <utility>

namespace platform {

OSStatus startReceivingAppleEvents(FourCharCode signature, std::function<void()> onActivate) {
  return EventReceiver::shared().start(signature, std::move(onActivate));
}

void stopReceivingAppleEvents() { EventReceiver::shared().stop(); }

// Shared with the calls of `onChange` that are under way, which outlive a watch but do nothing
// then.
class ProcessWatch::State final : public std::enable_shared_from_this<State>, private BusClient {
 public:
  State(FourCharCode signature, std::function<void(bool)> onChange)
      : name_(busName(signature)), onChange_(std::move(onChange)) {}

  void start() {
    BusConnection &connection = BusConnection::session();
    if (const auto bus = connection.open()) {
      isRunning_ = watch(*bus);
      // What arrived before the bus's answers was taken off the bus with them.
      connection.arm();
    }
    connection.addClient(this);
  }

  void stop() {
    BusConnection::session().removeClient(this);
    match_.reset();
    onChange_ = nullptr;
  }

  bool isRunning() const { return isRunning_; }

 private:
  static int ownerChanged(sd_bus_message *message, void *self, sd_bus_error *) {
    const char *name = nullptr;
    const char *oldOwner = nullptr;
    const char *newOwner = nullptr;
    if (sd_bus_message_read(message, "sss", &name, &oldOwner, &newOwner) >= 0) {
      State &state = *static_cast<State *>(self);
      // One process may follow another without a gap.
      if (*oldOwner != '\0') {
        state.change(false);
      }
      if (*newOwner != '\0') {
        state.change(true);
      }
    }
    return 0;
  }

  void busIsBack(sd_bus *bus) override {
    if (watch(bus)) {
      change(true);
    }
  }

  void busIsGone() override {
    match_.reset();
    change(false);
  }

  // Whether the process runs now.
  bool watch(sd_bus *bus) {
    const std::string rule =
        "type='signal',sender='org.freedesktop.DBus',path='/org/freedesktop/DBus',"
        "interface='org.freedesktop.DBus',member='NameOwnerChanged',arg0='" +
        name_ + "'";
    sd_bus_slot *slot = nullptr;
    if (sd_bus_add_match(bus, &slot, rule.c_str(), ownerChanged, this) >= 0) {
      match_.reset(slot);
    }
    return BusConnection::askOn(bus, "GetNameOwner", name_).has_value();
  }

  void change(bool isRunning) {
    if (isRunning == isRunning_) {
      return;
    }
    isRunning_ = isRunning;
    BusConnection::session().addTask([self = shared_from_this(), isRunning] {
      if (const auto onChange = self->onChange_) {
        onChange(isRunning);
      }
    });
  }

  std::string name_;
  std::function<void(bool)> onChange_;
  Slot match_;
  bool isRunning_ = false;
};

ProcessWatch::ProcessWatch(FourCharCode signature, std::function<void(bool isRunning)> onChange)
    : state_(std::make_shared<State>(signature, std::move(onChange))) {
  state_->start();
}

ProcessWatch::~ProcessWatch() { state_->stop(); }

bool ProcessWatch::isRunning() const { return state_->isRunning(); }

}  // namespace platform
