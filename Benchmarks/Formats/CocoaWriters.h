// Attributed text to RTF in Cocoa: by AppKit, and by the plug-in's category.
#pragma once

#include "Jobs.h"

#include <cstddef>
#include <vector>

namespace benchmarks {

// AppKit's writer comes first: "AppKit's RTF writer". All write the same attributed text of so many
// code units, a run of other attributes every 32 units; the host's predicates, five for each
// code unit, are part of what the category costs.
std::vector<Job> cocoaWriters(std::size_t units);

}  // namespace benchmarks
