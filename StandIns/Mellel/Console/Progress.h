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

  // A step begins; the one before is over.
  void begin(std::string step);
  // The step is over, and no other begins.
  void end() { pending_.clear(); }

  // When tick() wants to be called, while a step is going on.
  std::optional<Clock::time_point> due() const;
  void tick();

 private:
  bool isOnTerminal_;
  Clock::time_point beginning_ = Clock::now();
  Clock::time_point stepBeginning_ = beginning_;
  // The step that was not told yet; empty where there is none.
  std::string pending_;
};

}  // namespace mellel::console
