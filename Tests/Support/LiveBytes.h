// How many bytes of the heap are in use now, in a release build and under the sanitizers alike.
//
// This is what leaks are counted by here. The leak checker of the sanitizers cannot: GNUstep keeps
// objects of its own to the end of the process, and all objects, also ours, are allocated by
// GNUstep, so that overlooking its leaks overlooks ours.
#pragma once

#include <cstddef>

namespace test_support {

std::size_t liveBytes();

// Whether what is freed goes back to the system. The sanitizers keep it, to notice its further
// use.
bool freedMemoryIsGivenBack();

// To be called before the processes are started whose bytes are to be counted: the C library
// counts what it keeps at hand for a thread as in use, some ten kilobytes that come and go.
void makeProcessesCountExactly();

}  // namespace test_support
