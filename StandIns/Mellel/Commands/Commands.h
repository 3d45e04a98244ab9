// What the commands do. Results go to standard output; a failure is the caller's to tell.
#pragma once

#include "Options.h"

#include <StandIns/Mellel/Console/Failure.h>

#include <expected>

namespace mellel::commands {

std::expected<void, console::Failure> run(const Options &options);

}  // namespace mellel::commands
