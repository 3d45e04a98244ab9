// The agent answering one request after the other, between a prepared host and a carrier that sends
// nothing. The documents have the same number of citations, and as many of them take turns as it
// takes to show all different citations: else the processor would know a small document by heart.
#pragma once

#import "PreparedHost.h"

#include <Platform/AppleEventMessage.h>

#include <cstddef>
#include <vector>

namespace benchmarks {

enum class Kind { finalScan, preliminaryScan, liveBibliography };

const char *nameOf(Kind kind);

// Loads the plug-in's bundle and puts a carrier in place; to be called once, first. Returns the
// host, which lives as long as the program, or nil with a line on standard error.
PreparedHost *startPlugin();

class Conversation {
 public:
  Conversation(PreparedHost *host, Kind kind, std::size_t citationCount);

  // Puts the next document into the host; not the agent's work.
  void prepareNext();

  // Returns the bytes of the reply. Ends the program where it is not an answer to the whole
  // document.
  std::size_t answerPrepared();

  std::size_t answerOnce() {
    prepareNext();
    return answerPrepared();
  }

 private:
  PreparedHost *host_;
  Kind kind_;
  std::size_t citationCount_;
  std::vector<platform::IncomingEvent> requests_;
  std::size_t turn_ = 0;
};

}  // namespace benchmarks
