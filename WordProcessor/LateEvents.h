// Events that arrive when nobody waits for them any more.
#pragma once

namespace wordprocessor {

// Handles what has arrived already, and waits for more no longer than a few milliseconds.
void handleWhatHasArrived();

}  // namespace wordprocessor
