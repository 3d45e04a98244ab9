// Whole files, read the same way on every platform.
#pragma once

#include "Failure.h"

#include <cstddef>
#include <expected>
#include <string>

namespace appleevents {

// Far above every payload that a host takes, written down in hexadecimal.
inline constexpr std::size_t largestInput = std::size_t{1024} * 1024 * 1024;

// "-" is standard input.
std::expected<std::string, Failure> readInput(const std::string &path);

}  // namespace appleevents
