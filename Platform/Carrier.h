// The seam between Apple Events and what carries them. In a running program that is the session
// bus; a test puts a carrier of its own in its place (see Tests/Support).
#pragma once

#include "AppleEventMessage.h"

#include <ApplicationServices/Processes.h>

#include <expected>
#include <optional>

namespace platform {

struct Process {
  ProcessSerialNumber serialNumber{};
  OSType signature = 0;
};

bool operator==(const Process &left, const Process &right);

class Carrier {
 public:
  virtual ~Carrier() = default;

  // Sends the event; when a reply is wanted waits for it and returns its parameters, else returns
  // none. The statuses are AESendMessage's.
  virtual std::expected<Parameters, OSStatus> send(const OutgoingEvent &event) = 0;

  // The running process that comes next, always in the same order; behind nothing the first of all.
  // procNotFound behind the last one.
  virtual std::expected<Process, OSStatus> processBehind(
      std::optional<ProcessSerialNumber> previous) = 0;

  // The process of that number; procNotFound.
  virtual std::expected<Process, OSStatus> process(ProcessSerialNumber serialNumber) = 0;

  // Asks the process to come to the front. procNotFound.
  virtual OSStatus activate(ProcessSerialNumber serialNumber) = 0;
};

// Puts a carrier in place; null puts the session bus back. The carrier is borrowed until the next
// call. Returns the one that was there, null for the session bus.
Carrier *setCarrier(Carrier *carrier);

// The carrier in place.
Carrier &currentCarrier();

}  // namespace platform
