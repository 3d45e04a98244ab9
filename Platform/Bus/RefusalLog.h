// Tells of refused events in the log, a line a second at most.
//
// A sender that wants no reply is told nothing of a refusal, so the receiver's log is where it can
// be seen. But who floods a process gets hundreds of thousands of events refused, and a line for
// each would fill the disk and take longer than the refusing.
#pragma once

#include <Platform/RunLoopTimer.h>

#include <ApplicationServices/MacTypes.h>

#include <cstddef>
#include <string_view>

namespace platform {

class RefusalLog {
 public:
  RefusalLog();

  // The first refusal has a line of its own. Those of the second that follows are counted.
  void refused(std::string_view sender, OSStatus status);

 private:
  void tellTheRest();

  bool isQuiet_ = false;
  std::size_t untold_ = 0;
  RunLoopTimer endOfQuiet_;
};

}  // namespace platform
