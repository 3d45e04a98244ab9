// The agent answering one request about a document, again and again, between a prepared host and a
// carrier that sends nothing.
#pragma once

#include <Platform/AppleEventMessage.h>

#include <cstddef>

#import "PreparedHost.h"

namespace benchmarks {

enum class Kind { finalScan, preliminaryScan, liveBibliography };

const char *nameOf(Kind kind);

// Loads the plug-in's bundle and puts a carrier in place; to be called once, first. Returns the
// host, which lives as long as the program, or nil with a line on standard error.
PreparedHost *startPlugin();

class Conversation {
 public:
  Conversation(PreparedHost *host, Kind kind, std::size_t citationCount);

  // Returns the bytes of the reply. Ends the program where it is not an answer to the whole
  // document.
  std::size_t answerOnce();

 private:
  PreparedHost *host_;
  Kind kind_;
  std::size_t citationCount_;
  platform::IncomingEvent request_;
};

}  // namespace benchmarks
