#include "ProcessWithoutBus.h"

#include <Platform/AppleEventsProcess.h>
#include <StandIns/Mellel/Conversation/LateEvents.h>

#include <utility>
#include <vector>

namespace {

bool receives = false;
std::function<void()> whenActivated;
std::vector<std::function<void(bool)>> watchers;

}  // namespace

namespace platform {

OSStatus startReceivingAppleEvents(FourCharCode, std::function<void()> onActivate) {
  if (std::exchange(receives, true)) {
    return paramErr;
  }
  whenActivated = std::move(onActivate);
  return noErr;
}

void stopReceivingAppleEvents() {
  receives = false;
  whenActivated = nullptr;
}

// Watches end in the order in which they began, the last one first.
class ProcessWatch::State {};

ProcessWatch::ProcessWatch(FourCharCode, std::function<void(bool isRunning)> onChange) {
  watchers.push_back(std::move(onChange));
}

ProcessWatch::~ProcessWatch() { watchers.pop_back(); }

bool ProcessWatch::isRunning() const { return true; }

}  // namespace platform

namespace mellel::conversation {

// Nothing arrives by itself.
void handleLateEvents(const std::function<bool()> &) {}

}  // namespace mellel::conversation

namespace mellel_test {

bool isReceiving() { return receives; }

void activateThisProcess() {
  if (whenActivated) {
    whenActivated();
  }
}

void endWatchedProcesses() {
  for (const auto &watcher : watchers) {
    watcher(false);
  }
}

}  // namespace mellel_test
