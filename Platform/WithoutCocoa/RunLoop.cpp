#include "RunLoopTurn.h"

#include <Platform/RunLoop.h>

#include <poll.h>

#include <algorithm>
#include <cstddef>
#include <ctime>
#include <memory>
#include <utility>
#include <vector>

namespace platform {
namespace {

// Outlives the RunLoopDescriptor that it belongs to where that goes away while calls are made.
struct Watch {
  int descriptor = -1;
  short events = POLLIN;
  void (*function)(void *) = nullptr;  // null: nobody is to be called any more
  void *context = nullptr;
};

using Watches = std::vector<std::shared_ptr<Watch>>;

Watches &watches() {
  static Watches *all = new Watches();
  return *all;
}

// Which turn was the last to begin.
std::size_t &lastTurn() {
  static std::size_t number = 0;
  return number;
}

timespec timeUntil(std::chrono::steady_clock::time_point deadline) {
  using namespace std::chrono;
  const nanoseconds time = std::max<nanoseconds>(deadline - steady_clock::now(), nanoseconds(0));
  return {.tv_sec = duration_cast<seconds>(time).count(), .tv_nsec = (time % seconds(1)).count()};
}

}  // namespace

RunLoopDescriptor::RunLoopDescriptor(int descriptor, std::function<void()> onReady)
    : descriptor_(descriptor), onReady_(std::move(onReady)), runLoop_(nullptr) {
  const auto watch =
      std::make_shared<Watch>(Watch{.descriptor = descriptor_, .function = fire, .context = this});
  watches().push_back(watch);
  target_ = watch.get();
}

RunLoopDescriptor::~RunLoopDescriptor() {
  static_cast<Watch *>(target_)->function = nullptr;
  std::erase_if(watches(), [this](const auto &watch) { return watch.get() == target_; });
}

void RunLoopDescriptor::setWatchesWriting(bool watches) {
  watchesWriting_ = watches;
  static_cast<Watch *>(target_)->events = watches ? POLLIN | POLLOUT : POLLIN;
}

void RunLoopDescriptor::fire(void *self) { static_cast<RunLoopDescriptor *>(self)->onReady_(); }

void runLoopTurn(std::chrono::steady_clock::time_point deadline) {
  const std::size_t thisTurn = ++lastTurn();
  const Watches watched = watches();
  std::vector<pollfd> descriptors;
  descriptors.reserve(watched.size());
  for (const auto &watch : watched) {
    descriptors.push_back({.fd = watch->descriptor, .events = watch->events, .revents = 0});
  }
  const timespec time = timeUntil(deadline);
  if (ppoll(descriptors.data(), descriptors.size(), &time, nullptr) <= 0) {
    return;
  }
  for (std::size_t index = 0; index < watched.size(); ++index) {
    // A call may end the watches behind it.
    if (descriptors[index].revents != 0 && watched[index]->function != nullptr) {
      watched[index]->function(watched[index]->context);
    }
    // A call may have taken turns itself: what was ready may have been handled there.
    if (lastTurn() != thisTurn) {
      return;
    }
  }
}

}  // namespace platform
