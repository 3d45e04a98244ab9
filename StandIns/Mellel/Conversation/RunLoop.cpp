#include "RunLoop.h"

#include <Platform/WithoutCocoa/RunLoopTurn.h>

namespace mellel::conversation {

namespace {

using Clock = std::chrono::steady_clock;

// Far enough to make no difference, near enough for every clock.
constexpr std::chrono::hours longTime{24};

}  // namespace

bool runLoopUntil(const std::function<bool()> &condition,
                  std::optional<Clock::time_point> deadline) {
  for (;;) {
    if (condition()) {
      return true;
    }
    const auto now = Clock::now();
    if (deadline && now >= *deadline) {
      return false;
    }
    platform::runLoopTurn(deadline.value_or(now + longTime));
  }
}

}  // namespace mellel::conversation
