// appleevents record
#pragma once

#include <Tools/AppleEvents/Commands/Failure.h>
#include <Tools/AppleEvents/Commands/Options.h>

#include <expected>

namespace appleevents {

std::expected<Status, Failure> runRecord(const RecordOptions &options);

}  // namespace appleevents
