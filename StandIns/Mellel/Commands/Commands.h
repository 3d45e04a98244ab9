// What the commands do. Results go to standard output; a failure is the caller's to tell.
#pragma once

#include <expected>

#include <StandIns/Mellel/Conversation/Failure.h>
#include "Options.h"

namespace mellel {

std::expected<void, Failure> run(const Options &options);

}  // namespace mellel
