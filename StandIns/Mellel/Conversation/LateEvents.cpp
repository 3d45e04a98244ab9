#include "LateEvents.h"

#include <Platform/WithoutCocoa/RunLoopTurn.h>

#include <chrono>

namespace mellel::conversation {

void handleLateEvents(const std::function<bool()> &areAllThere) {
  constexpr std::chrono::milliseconds longestWait{4};
  const auto deadline = std::chrono::steady_clock::now() + longestWait;
  while (!areAllThere() && std::chrono::steady_clock::now() < deadline) {
    platform::runLoopTurn(deadline);
  }
}

}  // namespace mellel::conversation
