#include "Carrier.h"

#include <ApplicationServices/Processes.h>

#include <new>
#include <optional>

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

}  // namespace

namespace platform {

bool operator==(const Process &left, const Process &right) {
  return isSame(left.serialNumber, right.serialNumber) && left.signature == right.signature;
}

}  // namespace platform

OSErr GetNextProcess(ProcessSerialNumber *serialNumber) try {
  const bool isFirst = isSame(*serialNumber, {0, kNoProcess});
  const auto next = platform::currentCarrier().processBehind(
      isFirst ? std::nullopt : std::optional(*serialNumber));
  if (!next) {
    return static_cast<OSErr>(next.error());
  }
  *serialNumber = next->serialNumber;
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
