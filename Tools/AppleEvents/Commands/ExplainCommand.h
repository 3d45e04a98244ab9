// appleevents explain
#pragma once

#include "Failure.h"
#include "Options.h"

#include <expected>

namespace appleevents {

// Status::differs where a rule is broken.
std::expected<Status, Failure> runExplain(const ExplainOptions &options);

}  // namespace appleevents
