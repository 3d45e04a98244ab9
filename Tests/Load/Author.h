// An author at work: a document that grows, shrinks and is scanned again and again, drawn by chance
// from a seed. Its citations are in the example library, but for a few.
#pragma once

#include "Conversation.h"

#include <cstdint>
#include <filesystem>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace load_test {

class Author {
 public:
  // The library is a BibTeX file; its keys are what the author cites.
  Author(std::uint64_t seed, const std::filesystem::path &library);

  // What is sent next. `texts` are the citations of the document, as they are in a request.
  Request next();

  // The same scans whenever asked for: of more documents than a host remembers, in every style that
  // the author uses. What the host remembers is then the same, too.
  std::vector<Request> sameAgain() const;

  // Whether it is answered, and every citation that the library has was found and formatted.
  bool isAnswered(const Request &request, std::string_view answer) const;

  // One that is in the library.
  const std::string &anyKey() const { return keys_.front(); }

 private:
  std::uint32_t upTo(std::uint32_t most);
  bool oneIn(std::uint32_t count) { return upTo(count - 1) == 0; }
  std::string citation();
  void edit();
  Request handshake() const;
  Request find() const;
  Request scan(const char *name, formats::FourCharacterCode eventID,
               const std::vector<std::string> &document, const char *style) const;

  std::mt19937_64 random_;
  std::vector<std::string> keys_;
  std::vector<std::string> document_;
  std::uint32_t documentID_ = 1;
  const char *style_ = "apa";
  bool isScanning_ = false;  // between the two requests of a scan
};

}  // namespace load_test
