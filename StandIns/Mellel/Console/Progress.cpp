#include "Progress.h"

#include "Failure.h"

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
// What a host computes is over by then; what it waits for is not.
constexpr std::chrono::milliseconds timeToWonder{1000};

void tell(const std::string &step) {
  terminal::printError("mellel: " + terminal::TerminalText::inOneLine(step) + " ...\n");
}

}  // namespace

Progress::Progress() : isOnTerminal_(isatty(STDERR_FILENO) == 1) {}

void Progress::begin(std::string step, std::string hint) {
  end();
  stepBeginning_ = Clock::now();
  // Whoever wants to hear nothing is told this all the same: it may be his turn.
  hint_ = std::move(hint);
  if (isQuiet_) {
    return;
  }
  if (isOnTerminal_) {
    tell(step);
  } else {
    pending_ = std::move(step);
  }
}

void Progress::end() {
  pending_.clear();
  hint_.clear();
}

std::optional<Progress::Clock::time_point> Progress::due() const {
  if (!pending_.empty()) {
    return std::max(beginning_ + patience, stepBeginning_ + leastStep);
  }
  return hint_.empty() ? std::nullopt : std::optional(stepBeginning_ + timeToWonder);
}

void Progress::tick() {
  const Clock::time_point now = Clock::now();
  if (!pending_.empty() && now >= *due()) {
    tell(pending_);
    pending_.clear();
  }
  if (!hint_.empty() && now >= stepBeginning_ + timeToWonder) {
    remark(hint_);
    hint_.clear();
  }
}

}  // namespace mellel::console
