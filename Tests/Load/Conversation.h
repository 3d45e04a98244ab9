// Requests as the word processor makes them, valid, of all eight kinds and many sizes, drawn by
// chance from a seed, with the answers that are due to them.
#pragma once

#include "LoadEvents.h"

#include <cstdint>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace load_test {

struct Request {
  const char *name = "";
  formats::FourCharacterCode eventID = 0;
  std::string payload = {};
  // The event that the plug-in has to send for it, if any.
  std::optional<formats::FourCharacterCode> answerID = {};
  // Whether its answer is the reply itself.
  bool isAnsweredByReply = false;
  std::uint32_t documentID = 0;
  // What the answer has to hold, in order: citations, or formatted groups.
  std::vector<std::string> texts = {};
};

// Whether the answer is the one that is due to the request.
bool isAnswerTo(const Request &request, std::string_view answer);

class Conversation {
 public:
  explicit Conversation(std::uint64_t seed) : random_(seed) {}

  Request next();

 private:
  std::uint32_t upTo(std::uint32_t most);
  bool oneIn(std::uint32_t count) { return upTo(count - 1) == 0; }
  std::uint32_t citationCount();
  std::string citation();
  std::string group();
  Request scan(const char *name, formats::FourCharacterCode eventID);
  Request preliminaryScan();

  std::mt19937_64 random_;
};

}  // namespace load_test
