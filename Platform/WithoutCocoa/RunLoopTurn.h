// The run loop of a process without Cocoa. It has one mode and knows descriptors only: a timer of
// this platform is a descriptor too.
#pragma once

#include <chrono>

namespace platform {

// Waits until something is ready or the time is over, and handles all that is ready then. A time
// in the past waits for nothing. To be called from one thread only.
void runLoopTurn(std::chrono::steady_clock::time_point deadline);

}  // namespace platform
