// How much memory of the heap a piece of work takes at its worst moment.
//
// The program's malloc and free stand before the C library's, for the libraries that it loads as
// well. While nothing is counted they only pass on.
#pragma once

#include <cstddef>
#include <functional>

namespace benchmarks {

// The most bytes that were in use at once during the call, beyond those in use before it; what the
// allocator keeps for itself beside each block included.
std::size_t peakHeapUse(const std::function<void()> &work);

}  // namespace benchmarks
