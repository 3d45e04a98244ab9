#include "BusCommands.h"

#include <Tools/AppleEvents/Bus/RecordCommand.h>

namespace appleevents {

std::expected<Status, Failure> record(const RecordOptions &options) { return runRecord(options); }

}  // namespace appleevents
