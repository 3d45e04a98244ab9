// mellel scan and mellel live: a copy of the document with its citations formatted.
#pragma once

#include "Options.h"

#include <StandIns/Mellel/Console/Failure.h>

#include <chrono>
#include <expected>
#include <optional>

namespace mellel::commands {

std::expected<void, console::Failure> format(const FormatOptions &options,
                                             std::optional<std::chrono::seconds> timeout);

}  // namespace mellel::commands
