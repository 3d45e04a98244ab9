#include "RunLoop.h"

#include <Platform/WithoutCocoa/RunLoopTurn.h>

#include <algorithm>

namespace mellel::conversation {

using console::Progress;

namespace {

// Far enough to make no difference, near enough for every clock.
constexpr std::chrono::hours longTime{24};

}  // namespace

bool runLoopUntil(const std::function<bool()> &condition,
                  std::optional<Progress::Clock::time_point> deadline, Progress &progress) {
  for (;;) {
    if (condition()) {
      return true;
    }
    const auto now = Progress::Clock::now();
    if (deadline && now >= *deadline) {
      return false;
    }
    platform::runLoopTurn(
        std::min(deadline.value_or(now + longTime), progress.due().value_or(now + longTime)));
    progress.tick();
  }
}

}  // namespace mellel::conversation
