// How many bytes of the heap are in use now, in a release build and under the sanitizers alike.
//
// This is what leaks are counted by here. The leak checker of the sanitizers cannot: GNUstep keeps
// objects of its own to the end of the process, and all objects, also ours, are allocated by
// GNUstep, so that overlooking its leaks overlooks ours.
#pragma once

#include <cstddef>

namespace load_test {

std::size_t liveBytes();

}  // namespace load_test
