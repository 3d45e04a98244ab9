// Tells on standard error how far something is that its user waits for: once it has taken some
// tenths of a second, and every few seconds from then on.
#pragma once

#include <StandIns/Korvo/Engine/LibraryImporter.h>

#include <chrono>

namespace korvo::application {

class WaitingNews {
 public:
  using Clock = std::chrono::steady_clock;

  // The user waits from then on.
  explicit WaitingNews(Clock::time_point beginning = Clock::now());

  // Whether there is something to tell now; if so, it is counted as told.
  bool isDue(Clock::time_point now = Clock::now());

  // Tells of the reading of files. This object must outlive it.
  engine::ImportProgress ofImport();

 private:
  Clock::time_point next_;
};

}  // namespace korvo::application
