// What the commands do. Results go to standard output; a failure is the caller's to tell.
#pragma once

#include "Failure.h"
#include "Options.h"

#include <expected>

namespace appleevents {

std::expected<Status, Failure> run(const Command &command);

}  // namespace appleevents
