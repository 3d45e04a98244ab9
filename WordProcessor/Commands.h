// What the commands do. Results go to standard output; a failure is the caller's to tell.
#pragma once

#include <expected>

#include "Failure.h"
#include "Options.h"

namespace wordprocessor {

std::expected<void, Failure> run(const Options &options);

}  // namespace wordprocessor
