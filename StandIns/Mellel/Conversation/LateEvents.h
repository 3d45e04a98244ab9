// Events that arrive when nobody waits for them any more.
#pragma once

#include <functional>

namespace mellel::conversation {

// Handles what has arrived already, and waits for more until the condition holds, no longer than a
// few milliseconds.
void handleLateEvents(const std::function<bool()> &areAllThere);

}  // namespace mellel::conversation
