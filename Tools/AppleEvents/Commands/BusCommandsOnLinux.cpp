#include "BusCommands.h"

#include <Tools/AppleEvents/Bus/RecordCommand.h>
#include <Tools/AppleEvents/Bus/ReplayCommand.h>

namespace appleevents {

std::expected<Status, Failure> record(const RecordOptions &options) { return runRecord(options); }

std::expected<Status, Failure> replay(const ReplayOptions &options) { return runReplay(options); }

}  // namespace appleevents
