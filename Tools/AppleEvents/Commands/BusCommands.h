// The commands that need a message bus. CMake chooses the source: on macOS there is none, and the
// commands say so.
#pragma once

#include "Failure.h"
#include "Options.h"

#include <expected>

namespace appleevents {

std::expected<Status, Failure> record(const RecordOptions &options);
std::expected<Status, Failure> replay(const ReplayOptions &options);

}  // namespace appleevents
