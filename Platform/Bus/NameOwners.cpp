#include "NameOwners.h"

#include "BusConnection.h"
#include "BusNames.h"

#include <ApplicationServices/MacErrors.h>

#include <utility>

namespace platform {
namespace {

constexpr char changes[] =
    "type='signal',sender='org.freedesktop.DBus',path='/org/freedesktop/DBus',"
    "interface='org.freedesktop.DBus',member='NameOwnerChanged',"
    "arg0namespace='org.korvo.AppleEvents'";

}  // namespace

NameOwners::NameOwners(sd_bus *bus) : bus_(bus) {
  sd_bus_slot *slot = nullptr;
  if (sd_bus_add_match(bus, &slot, changes, ownerChanged, this) >= 0) {
    match_.reset(slot);
  }
}

int NameOwners::ownerChanged(sd_bus_message *message, void *self, sd_bus_error *) {
  const char *name = nullptr;
  const char *oldOwner = nullptr;
  const char *newOwner = nullptr;
  NameOwners &owners = *static_cast<NameOwners *>(self);
  if (sd_bus_message_read(message, "sss", &name, &oldOwner, &newOwner) <= 0) {
    return 0;
  }
  owners.owners_.erase(name);
  if (owners.names_ && *newOwner == '\0') {
    owners.names_->erase(name);
  } else if (owners.names_ && signatureInBusName(name)) {
    owners.names_->insert(name);
  }
  return 0;
}

std::expected<std::string, OSStatus> NameOwners::nameBehind(const std::string &name) {
  if (!names_) {
    if (const OSStatus status = renewNames(); status != noErr) {
      return std::unexpected(status);
    }
  }
  const auto next = names_->upper_bound(name);
  std::expected<std::string, OSStatus> found = std::unexpected(OSStatus{procNotFound});
  if (next != names_->end()) {
    found = *next;
  }
  // Without the bus's word of changes nothing can be remembered.
  if (match_ == nullptr) {
    names_.reset();
  }
  return found;
}

// A change whose signal is still under way is in the bus's answer already, and comes once more,
// which changes nothing.
OSStatus NameOwners::renewNames() {
  const auto listed = BusConnection::listNamesOn(bus_);
  if (!listed) {
    return listed.error();
  }
  names_.emplace();
  for (const std::string &name : *listed) {
    if (signatureInBusName(name)) {
      names_->insert(name);
    }
  }
  return noErr;
}

std::expected<NameOwners::Owner, OSStatus> NameOwners::find(const std::string &name) {
  if (const auto known = owners_.find(name); known != owners_.end()) {
    return known->second;
  }
  auto answer = ask(name);
  // Without the bus's word of changes nothing can be remembered.
  if (answer && match_ != nullptr) {
    owners_.emplace(name, *answer);
  }
  return answer;
}

std::expected<NameOwners::Owner, OSStatus> NameOwners::ask(const std::string &name) const {
  const auto ownerReply = BusConnection::askOn(bus_, "GetNameOwner", name);
  if (!ownerReply) {
    return std::unexpected(ownerReply.error());
  }
  const char *connection = nullptr;
  if (sd_bus_message_read_basic(ownerReply->get(), 's', &connection) <= 0) {
    return std::unexpected(OSStatus{connectionInvalid});
  }
  Owner owner{connection, 0};
  const auto numberReply =
      BusConnection::askOn(bus_, "GetConnectionUnixProcessID", owner.connection);
  if (!numberReply) {
    return std::unexpected(numberReply.error());
  }
  if (sd_bus_message_read_basic(numberReply->get(), 'u', &owner.processNumber) <= 0) {
    return std::unexpected(OSStatus{connectionInvalid});
  }
  return owner;
}

}  // namespace platform
