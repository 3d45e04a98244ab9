// What the commands do. Results go to standard output; a failure is the caller's to tell.
#pragma once

#include "Options.h"

#include <StandIns/Mellel/Conversation/Failure.h>

#include <expected>

namespace mellel {

std::expected<void, Failure> run(const Options &options);

}  // namespace mellel
