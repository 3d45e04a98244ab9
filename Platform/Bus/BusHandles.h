// Owning references to sd-bus's objects.
#pragma once

#include <systemd/sd-bus.h>

#include <memory>

namespace platform {

// Keeps its connection alive too.
using Message = std::shared_ptr<sd_bus_message>;

// Takes over a reference.
inline Message adoptMessage(sd_bus_message *message) {
  return Message(message, sd_bus_message_unref);
}

// Adds a reference.
inline Message shareMessage(sd_bus_message *message) {
  return adoptMessage(sd_bus_message_ref(message));
}

struct SlotRelease {
  void operator()(sd_bus_slot *slot) const { sd_bus_slot_unref(slot); }
};
// A registration (of an object, a match, an awaited reply) that ends with it.
using Slot = std::unique_ptr<sd_bus_slot, SlotRelease>;

struct ConnectionRelease {
  void operator()(sd_bus *bus) const { sd_bus_close_unref(bus); }
};
using Connection = std::unique_ptr<sd_bus, ConnectionRelease>;

// An error that a call may fill in.
class BusError {
 public:
  BusError() = default;
  ~BusError() { sd_bus_error_free(&error_); }
  BusError(const BusError &) = delete;
  BusError &operator=(const BusError &) = delete;

  sd_bus_error *out() { return &error_; }
  const sd_bus_error &get() const { return error_; }

 private:
  sd_bus_error error_ = SD_BUS_ERROR_NULL;
};

}  // namespace platform
