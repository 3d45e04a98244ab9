// appleevents replay
#pragma once

#include <Tools/AppleEvents/Commands/Failure.h>
#include <Tools/AppleEvents/Commands/Options.h>

#include <expected>

namespace appleevents {

// Status::differs where the host answers otherwise than it was recorded.
std::expected<Status, Failure> runReplay(const ReplayOptions &options);

}  // namespace appleevents
