#include "Author.h"

#include <Formats/CitationResolution.h>
#include <Formats/Insertion.h>
#include <Formats/ScanReply.h>
#include <Formats/ScanRequest.h>
#include <Formats/SmallMessages.h>

#include <algorithm>
#include <fstream>
#include <iterator>

namespace load_test {
namespace {

constexpr const char *styles[] = {"apa", "ieee", "chicago-author-date"};
// What the library has nothing for.
constexpr char unknown[] = "Nobody 1900";

std::vector<std::string> keysIn(const std::filesystem::path &library) {
  std::vector<std::string> keys;
  std::ifstream file(library);
  for (std::string line; std::getline(file, line);) {
    const std::size_t brace = line.find('{');
    if (line.starts_with('@') && !line.starts_with("@string") && line.ends_with(',') &&
        brace != line.npos) {
      keys.push_back(line.substr(brace + 1, line.size() - brace - 2));
    }
  }
  return keys;
}

// Text in braces is what was not formatted.
bool isFormatted(std::string_view group) {
  return !group.empty() && !group.starts_with('{') && !group.starts_with("\\{") &&
         !group.starts_with("\\'7b");
}

}  // namespace

Author::Author(std::uint64_t seed, const std::filesystem::path &library)
    : random_(seed), keys_(keysIn(library)) {}

std::uint32_t Author::upTo(std::uint32_t most) {
  return std::uniform_int_distribution<std::uint32_t>(0, most)(random_);
}

std::string Author::citation() {
  std::string text;
  for (std::uint32_t count = oneIn(5) ? 2 : 1; count > 0; --count) {
    const auto last = static_cast<std::uint32_t>(keys_.size() - 1);
    const std::string &key = keys_[upTo(last)];
    text += (text.empty() ? "" : "; ") + key + "#" + key;
    text += oneIn(3) ? "@" + std::to_string(1 + upTo(400)) : "";
  }
  return text;
}

void Author::edit() {
  constexpr std::size_t longest = 12;
  if (document_.size() >= longest || oneIn(100)) {
    document_.clear();
    ++documentID_;
    style_ = styles[upTo(std::size(styles) - 1)];
  }
  const auto place = [this] {
    return document_.begin() + upTo(static_cast<std::uint32_t>(document_.size() - 1));
  };
  if (document_.size() < 3 || oneIn(3)) {
    // The first of all, so that the notice about it is open from then on.
    document_.push_back((documentID_ == 1 && document_.empty()) || oneIn(50) ? unknown
                                                                             : citation());
  } else if (oneIn(4)) {
    document_.erase(place());
  } else {
    *place() = citation();
  }
}

Request Author::handshake() const {
  const auto payload = formats::encodeHandshake({.first = 1, .second = 2});
  return {.name = "handshake",
          .eventID = formats::request::handshake,
          .payload = {payload.data(), payload.size()},
          .answerID = formats::answer::preferences};
}

// Of one only: its editor stays open.
Request Author::find() const {
  return {.name = "find",
          .eventID = formats::request::findCitation,
          .payload = anyKey() + "#" + anyKey() + '\0'};
}

Request Author::scan(const char *name, formats::FourCharacterCode eventID,
                     const std::vector<std::string> &document, const char *style) const {
  Request request{.name = name, .eventID = eventID, .documentID = documentID_, .texts = document};
  std::vector<formats::CitationPair> pairs;
  for (const std::string &text : request.texts) {
    pairs.push_back({text, ""});
  }
  if (eventID == formats::request::preliminaryScan) {
    request.answerID = formats::answer::citationResolution;
    request.payload = formats::encodePreliminaryScanRequest(documentID_, pairs);
  } else if (eventID == formats::request::finalScan) {
    request.answerID = formats::answer::finalScan;
    request.payload = formats::encodeFinalScanRequest(documentID_, true, style, pairs);
  } else {
    request.isAnsweredByReply = true;
    request.documentID = 0;
    request.payload = formats::encodeLiveBibliographyRequest(documentID_, true, style, pairs);
  }
  return request;
}

std::vector<Request> Author::sameAgain() const {
  std::vector<Request> requests;
  for (const char *style : styles) {
    for (std::size_t first = 0; first < 5; ++first) {
      std::vector<std::string> document;
      for (std::size_t index = first; index < first + 5; ++index) {
        document.push_back(keys_[index % keys_.size()] + "#" + keys_[index % keys_.size()]);
      }
      requests.push_back(scan("final scan", formats::request::finalScan, document, style));
    }
  }
  return requests;
}

Request Author::next() {
  if (isScanning_) {
    isScanning_ = false;
    return scan("final scan", formats::request::finalScan, document_, style_);
  }
  if (oneIn(50)) {
    return handshake();
  }
  if (oneIn(50)) {
    return find();
  }
  if (oneIn(50)) {
    return {.name = "insert",
            .eventID = formats::request::insertCitation,
            .answerID = formats::answer::citation};
  }
  if (document_.empty()) {
    edit();
    return find();
  }
  if (oneIn(3)) {
    edit();
  }
  if (oneIn(4)) {
    return scan("live bibliography", formats::request::liveBibliography, document_, style_);
  }
  isScanning_ = true;
  return scan("preliminary scan", formats::request::preliminaryScan, document_, style_);
}

bool Author::isAnswered(const Request &request, std::string_view answer) const {
  switch (request.eventID) {
    case formats::request::handshake:
      return formats::decodePreferences(answer).has_value();
    case formats::request::insertCitation: {
      const auto insertion = formats::decodeInsertion(answer);
      return insertion && !insertion->citation.empty();
    }
    case formats::request::preliminaryScan: {
      const auto resolution = formats::decodeCitationResolution(answer);
      return resolution && resolution->documentID == request.documentID &&
             std::ranges::equal(resolution->citations, request.texts, {},
                                &formats::ResolvedCitation::citation);
    }
    default: {
      const auto reply = formats::decodeScanReply(answer);
      return reply && reply->documentID == request.documentID && reply->bibliography &&
             std::ranges::equal(reply->groups, request.texts,
                                [](std::string_view group, const std::string &text) {
                                  return isFormatted(group) == (text != unknown);
                                });
    }
  }
}

}  // namespace load_test
