// mellel scan and mellel live: a copy of the document with its citations formatted.
#pragma once

#include <chrono>
#include <expected>
#include <optional>

#include "Failure.h"
#include "Options.h"

namespace wordprocessor {

std::expected<void, Failure> format(const FormatOptions &options,
                                    std::optional<std::chrono::seconds> timeout);

}  // namespace wordprocessor
