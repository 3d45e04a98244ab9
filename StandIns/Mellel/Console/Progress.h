// Tells on standard error what takes long: at once where a person looks at a terminal, elsewhere
// once its user has waited for some tenths of a second, whatever that time went into.
#pragma once

#include <chrono>
#include <optional>
#include <string>

namespace mellel::console {

class Progress {
 public:
  using Clock = std::chrono::steady_clock;

  // The user waits from now on.
  Progress();
  // The user had stopped waiting, and waits from now on again.
  void restart() { beginning_ = Clock::now(); }

  // Where nobody wants to be told.
  void keepQuiet() { isQuiet_ = true; }

  // A step begins; the one before is over. The hint, if there is one, says what may be in the way,
  // and is told once the step has taken a second.
  void begin(std::string step, std::string hint = {});
  // The step is over, and no other begins.
  void end();

  // When tick() wants to be called, while a step is going on.
  std::optional<Clock::time_point> due() const;
  void tick();

 private:
  bool isOnTerminal_;
  Clock::time_point beginning_ = Clock::now();
  Clock::time_point stepBeginning_ = beginning_;
  bool isQuiet_ = false;
  // The step that was not told yet; empty where there is none.
  std::string pending_;
  std::string hint_;  // likewise
};

}  // namespace mellel::console
