// Tells on standard error what takes long: at once where a person looks at a terminal, elsewhere
// only once a step has taken half a second.
#pragma once

#include <chrono>
#include <optional>
#include <string>

namespace wordprocessor {

class Progress {
 public:
  using Clock = std::chrono::steady_clock;

  Progress();

  // A step begins; the one before is over.
  void begin(std::string step);
  // The step is over, and no other begins.
  void end() { pending_.reset(); }

  // When tick() wants to be called, while a step is going on.
  std::optional<Clock::time_point> due() const;
  void tick();

 private:
  bool isOnTerminal_;
  // The step that was not told yet.
  std::optional<std::string> pending_;
  Clock::time_point beginning_;
};

}  // namespace wordprocessor
