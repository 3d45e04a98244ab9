// Plays the requests of a recording again, and compares what the host answers with what it answered
// then.
#pragma once

#include "HostSession.h"

#include <Tools/AppleEvents/Recordings/Recording.h>

#include <chrono>
#include <cstddef>
#include <string>
#include <vector>

namespace appleevents {

struct ReplayedRequest {
  std::size_t number = 0;  // of its event
  std::string name;
  std::vector<std::string> differences;  // lines
  std::vector<std::string> remarks;      // what differs and may, lines
};

// In order. Ends with the request in which the host ends.
std::vector<ReplayedRequest> replay(const Recording &recording, HostSession &session,
                                    std::chrono::seconds timeout);

}  // namespace appleevents
