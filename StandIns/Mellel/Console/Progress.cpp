#include "Progress.h"

#include <StandIns/Terminal/Output.h>

#include <unistd.h>

#include <algorithm>
#include <utility>

namespace mellel::console {

namespace {

// So that what is told has been read by half a second.
constexpr std::chrono::milliseconds patience{400};
// A step that is over at once is not worth a line, however long the others took.
constexpr std::chrono::milliseconds leastStep{100};

void tell(const std::string &step) {
  terminal::printError("mellel: " + terminal::TerminalText::inOneLine(step) + " ...\n");
}

}  // namespace

Progress::Progress() : isOnTerminal_(isatty(STDERR_FILENO) == 1) {}

void Progress::begin(std::string step) {
  stepBeginning_ = Clock::now();
  pending_.clear();
  if (isOnTerminal_) {
    tell(step);
  } else {
    pending_ = std::move(step);
  }
}

std::optional<Progress::Clock::time_point> Progress::due() const {
  return pending_.empty()
             ? std::nullopt
             : std::optional(std::max(beginning_ + patience, stepBeginning_ + leastStep));
}

void Progress::tick() {
  if (!pending_.empty() && Clock::now() >= *due()) {
    tell(pending_);
    pending_.clear();
  }
}

}  // namespace mellel::console
