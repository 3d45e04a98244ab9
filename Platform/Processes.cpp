#include "Carrier.h"

#include <ApplicationServices/Processes.h>

#include <algorithm>
#include <new>

namespace {

bool isSame(const ProcessSerialNumber &left, const ProcessSerialNumber &right) {
  return left.highLongOfPSN == right.highLongOfPSN && left.lowLongOfPSN == right.lowLongOfPSN;
}

void writeName(OSType signature, StringPtr name) {
  name[0] = 4;
  for (int index = 0; index < 4; ++index) {
    name[1 + index] = static_cast<unsigned char>(signature >> (24 - 8 * index));
  }
}

using Processes = std::expected<std::vector<platform::Process>, OSStatus>;

// The first one behind kNoProcess. procNotFound behind the last one.
std::expected<ProcessSerialNumber, OSStatus> processBehind(const ProcessSerialNumber &previous,
                                                           const Processes &processes) {
  if (!processes) {
    return std::unexpected(processes.error());
  }
  auto next = processes->begin();
  if (!isSame(previous, {0, kNoProcess})) {
    next = std::ranges::find_if(*processes, [&previous](const platform::Process &process) {
      return isSame(process.serialNumber, previous);
    });
    next = next == processes->end() ? next : next + 1;
  }
  if (next == processes->end()) {
    return std::unexpected(OSStatus{procNotFound});
  }
  return next->serialNumber;
}

}  // namespace

namespace platform {

bool operator==(const Process &left, const Process &right) {
  return isSame(left.serialNumber, right.serialNumber) && left.signature == right.signature;
}

}  // namespace platform

OSErr GetNextProcess(ProcessSerialNumber *serialNumber) try {
  platform::Carrier &carrier = platform::currentCarrier();
  auto next = processBehind(*serialNumber, carrier.processesRemembered());
  if (!next) {
    next = processBehind(*serialNumber, carrier.processes());
  }
  if (!next) {
    return static_cast<OSErr>(next.error());
  }
  *serialNumber = *next;
  return noErr;
} catch (const std::bad_alloc &) {
  return memFullErr;
}

OSErr GetProcessInformation(const ProcessSerialNumber *serialNumber,
                            ProcessInfoRec *information) try {
  if (information->processInfoLength != sizeof *information ||
      information->processAppRef != nullptr) {
    return paramErr;
  }
  const auto process = platform::currentCarrier().process(*serialNumber);
  if (!process) {
    return static_cast<OSErr>(process.error());
  }
  const StringPtr name = information->processName;
  *information = {};
  information->processInfoLength = sizeof *information;
  information->processName = name;
  information->processNumber = process->serialNumber;
  information->processSignature = process->signature;
  if (name != nullptr) {
    writeName(process->signature, name);
  }
  return noErr;
} catch (const std::bad_alloc &) {
  return memFullErr;
}

OSErr SetFrontProcess(const ProcessSerialNumber *serialNumber) try {
  return static_cast<OSErr>(platform::currentCarrier().activate(*serialNumber));
} catch (const std::bad_alloc &) {
  return memFullErr;
}
