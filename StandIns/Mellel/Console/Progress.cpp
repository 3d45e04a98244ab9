#include "Progress.h"

#include "Failure.h"

#include <StandIns/Terminal/Output.h>

#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <system_error>
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

// Threads made meanwhile leave signals to the others, who may hold them back for a reason.
class SignalsHeld {
 public:
  SignalsHeld() {
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before_);
  }
  ~SignalsHeld() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }
  SignalsHeld(const SignalsHeld &) = delete;
  SignalsHeld &operator=(const SignalsHeld &) = delete;

 private:
  sigset_t before_{};
};

}  // namespace

Progress::Progress(Telling telling)
    : telling_(telling),
      patience_(isatty(STDERR_FILENO) == 1 ? Clock::duration::zero() : Clock::duration(patience)) {}

void Progress::restart() {
  const std::lock_guard lock(mutex_);
  beginning_ = Clock::now();
}

void Progress::begin(std::string step, std::string hint) {
  {
    const std::lock_guard lock(mutex_);
    stepBeginning_ = Clock::now();
    pending_ = telling_ == Telling::steps ? std::move(step) : std::string();
    hint_ = std::move(hint);
    if (!due()) {
      return;
    }
  }
  start();
  changed_.notify_one();
}

void Progress::end() {
  const std::lock_guard lock(mutex_);
  pending_.clear();
  hint_.clear();
}

void Progress::start() {
  if (teller_.joinable()) {
    return;
  }
  const SignalsHeld signalsHeld;
  try {
    teller_ = std::jthread([this](const std::stop_token &isToEnd) { tellInTime(isToEnd); });
  } catch (const std::system_error &) {
    // The work goes on where the system has no thread left for talk about it.
  }
}

void Progress::tellInTime(const std::stop_token &isToEnd) {
  std::unique_lock lock(mutex_);
  while (!isToEnd.stop_requested()) {
    const auto next = due();
    // Woken early, by another step or for nothing, it looks again when something is due.
    if (next) {
      changed_.wait_until(lock, isToEnd, *next, [&] { return due() != next; });
    } else {
      changed_.wait(lock, isToEnd, [&] { return due().has_value(); });
    }
    if (!isToEnd.stop_requested()) {
      tellWhatIsDue();
    }
  }
}

std::optional<Progress::Clock::time_point> Progress::due() const {
  if (!pending_.empty()) {
    return std::max(beginning_ + patience_, stepBeginning_ + leastStep);
  }
  return hint_.empty() ? std::nullopt : std::optional(stepBeginning_ + timeToWonder);
}

void Progress::tellWhatIsDue() {
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
