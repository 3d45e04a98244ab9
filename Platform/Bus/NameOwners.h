// Who has the names of application signatures, without asking the bus each time.
//
// A lookup is a round trip to the bus's daemon, about as long as sending a small event and getting
// its answer, and one event of the plug-in needs several: to see that the receiver is there, and to
// bring it to the front. So what the bus has answered is remembered, and forgotten as soon as the
// bus tells of a change (NameOwnerChanged). What is not remembered is asked for every time: a
// process that is not there costs a round trip, and one that has just come is never missed.
//
// What was remembered can be out of date by as much as the bus's signal is under way. That is no
// new case: a receiver can also end after the bus has answered a question, and before the event
// arrives.
#pragma once

#include "BusHandles.h"

#include <ApplicationServices/MacTypes.h>

#include <cstdint>
#include <expected>
#include <map>
#include <optional>
#include <set>
#include <string>

namespace platform {

// Knows one connection's bus; to be thrown away with it.
class NameOwners {
 public:
  explicit NameOwners(sd_bus *bus);
  NameOwners(const NameOwners &) = delete;
  NameOwners &operator=(const NameOwners &) = delete;

  struct Owner {
    // The bus's name for the owner's connection.
    std::string connection;
    std::uint32_t processNumber = 0;
  };

  // By what has arrived from the bus so far. procNotFound when nobody owns the name.
  std::expected<Owner, OSStatus> find(const std::string &name);

  // The next greater name of an application signature, by what has arrived from the bus so far;
  // procNotFound behind the last one. One that has just come may be missing.
  std::expected<std::string, OSStatus> nameBehind(const std::string &name);

  // Asks the bus for all names.
  OSStatus renewNames();

 private:
  static int ownerChanged(sd_bus_message *message, void *self, sd_bus_error *error);
  std::expected<Owner, OSStatus> ask(const std::string &name) const;

  sd_bus *bus_;
  Slot match_;
  std::map<std::string, Owner> owners_;
  std::optional<std::set<std::string>> names_;
};

}  // namespace platform
