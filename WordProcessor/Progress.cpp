#include "Progress.h"

#include <unistd.h>

#include <iostream>
#include <utility>

namespace wordprocessor {

namespace {

constexpr std::chrono::milliseconds patience{500};

void tell(const std::string &step) { std::cerr << "mellel: " << step << " ..." << std::endl; }

}  // namespace

Progress::Progress() : isOnTerminal_(isatty(STDERR_FILENO) == 1) {}

void Progress::begin(std::string step) {
  beginning_ = Clock::now();
  pending_.reset();
  if (isOnTerminal_) {
    tell(step);
  } else {
    pending_ = std::move(step);
  }
}

std::optional<Progress::Clock::time_point> Progress::due() const {
  return pending_ ? std::optional(beginning_ + patience) : std::nullopt;
}

void Progress::tick() {
  if (pending_ && Clock::now() >= beginning_ + patience) {
    tell(*pending_);
    pending_.reset();
  }
}

}  // namespace wordprocessor
