// Tells on standard error what takes long: where a person looks at a terminal once a step has taken
// a tenth of a second, elsewhere once the user has waited for some tenths as well, whatever that
// time went into.
//
// It is told by a thread of its own, because a step is as likely to be a long piece of work or a
// call of the system as a wait in the run loop.
#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <stop_token>
#include <string>
#include <thread>

namespace mellel::console {

enum class Telling { steps, hintsOnly };

class Progress {
 public:
  // The user waits from now on.
  explicit Progress(Telling telling = Telling::steps);
  // The user had stopped waiting, and waits from now on again.
  void restart();

  // A step begins; the one before is over. The hint, if there is one, says what may be in the way,
  // and is told once the step has taken a second, also to whoever wants to hear of no steps.
  void begin(std::string step, std::string hint = {});
  // The step is over, and no other begins. Nothing is told from now on.
  void end();

 private:
  using Clock = std::chrono::steady_clock;

  void start();
  void tellInTime(const std::stop_token &isToEnd);
  std::optional<Clock::time_point> due() const;
  void tellWhatIsDue();

  const Telling telling_;
  const Clock::duration patience_;

  // Guards all that follows, and is held while something is told.
  std::mutex mutex_;
  std::condition_variable_any changed_;
  Clock::time_point beginning_ = Clock::now();
  Clock::time_point stepBeginning_ = beginning_;
  // The step that was not told yet; empty where there is none.
  std::string pending_;
  std::string hint_;  // likewise

  // Last, to end first.
  std::jthread teller_;
};

}  // namespace mellel::console
