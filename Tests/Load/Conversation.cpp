#include "Conversation.h"

#include <Formats/CitationResolution.h>
#include <Formats/CitationText.h>
#include <Formats/Insertion.h>
#include <Formats/ScanReply.h>
#include <Formats/ScanRequest.h>
#include <Formats/SmallMessages.h>
#include <Formats/Unicode.h>

#include <algorithm>
#include <iterator>

namespace load_test {
namespace {

constexpr const char *names[] = {"Smith",     "Jones and Brown", "García",  "Müller et al.",
                                 "Çelik",     "?Nobody",         "O’Neill", "Никитин",
                                 "山田 太郎", "d’Alembert",      "Öz 😀"};

// What the echoing host makes of a group.
std::string formatted(const std::string &group) {
  const std::u16string text = formats::decodeUTF8(group);
  std::u16string_view rest = text;
  std::u16string searched;
  while (true) {
    const std::size_t end = rest.find(u';');
    const auto citation = formats::parseCitationText(rest.substr(0, end));
    if (!citation.searchText.empty()) {
      searched += searched.empty() ? u"" : u"; ";
      searched += citation.searchText;
    }
    if (end == rest.npos) {
      return "(" + formats::encodeUTF8(searched) + ")";
    }
    rest.remove_prefix(end + 1);
  }
}

bool isResolution(const Request &request, std::string_view answer) {
  const auto decoded = formats::decodeCitationResolution(answer);
  return decoded && decoded->documentID == request.documentID &&
         std::ranges::equal(decoded->citations, request.texts, {},
                            &formats::ResolvedCitation::citation);
}

bool isScanReply(const Request &request, std::string_view answer) {
  const auto decoded = formats::decodeScanReply(answer);
  return decoded && decoded->documentID == request.documentID &&
         std::ranges::equal(decoded->groups, request.texts);
}

bool isInsertion(const Request &request, std::string_view answer) {
  const auto decoded = formats::decodeInsertion(answer);
  return decoded && decoded->citation == request.texts.front();
}

}  // namespace

bool isAnswerTo(const Request &request, std::string_view answer) {
  switch (request.eventID) {
    case formats::request::handshake:
      return formats::decodePreferences(answer).has_value();
    case formats::request::insertCitation:
      return isInsertion(request, answer);
    case formats::request::preliminaryScan:
      return isResolution(request, answer);
    default:
      return isScanReply(request, answer);
  }
}

std::uint32_t Conversation::upTo(std::uint32_t most) {
  return std::uniform_int_distribution<std::uint32_t>(0, most)(random_);
}

// Mostly a page, sometimes a book; once in a while more than travels inside a message.
std::uint32_t Conversation::citationCount() {
  if (oneIn(1000)) {
    return 30'000;
  }
  return oneIn(20) ? upTo(3000) : oneIn(4) ? upTo(200) : upTo(10);
}

std::string Conversation::citation() {
  std::string text = oneIn(10) ? "%" : oneIn(10) ? "!" : "";
  text += oneIn(10) ? "\\see \\" : "";
  text += std::string(names[upTo(std::size(names) - 1)]) + " " + std::to_string(1900 + upTo(125));
  text += oneIn(3) ? "#TAG" + std::to_string(upTo(9999)) : "";
  text += oneIn(4) ? "@" + std::to_string(upTo(500)) + "–" + std::to_string(upTo(900)) : "";
  return text;
}

std::string Conversation::group() {
  std::string text = citation();
  for (std::uint32_t more = oneIn(3) ? upTo(4) : 0; more > 0; --more) {
    text += "; " + citation();
  }
  return text;
}

Request Conversation::scan(const char *name, formats::FourCharacterCode eventID) {
  Request request{.name = name, .eventID = eventID};
  std::vector<std::string> groups(citationCount());
  std::vector<formats::CitationPair> pairs;
  for (std::string &text : groups) {
    text = group();
    request.texts.push_back(formatted(text));
    const std::uint32_t place = upTo(9);
    // The second part counts where the first is empty or was verified.
    pairs.push_back(place == 0   ? formats::CitationPair{"", text}
                    : place == 1 ? formats::CitationPair{"verified before", text}
                                 : formats::CitationPair{text, "not looked at"});
  }
  const std::uint32_t documentID = upTo(UINT32_MAX);
  const bool wantsBibliography = oneIn(5);
  if (eventID == formats::request::liveBibliography) {
    request.isAnsweredByReply = true;
    request.payload =
        formats::encodeLiveBibliographyRequest(documentID, wantsBibliography, styleName, pairs);
  } else {
    request.answerID = formats::answer::finalScan;
    request.documentID = documentID;
    request.payload =
        formats::encodeFinalScanRequest(documentID, wantsBibliography, styleName, pairs);
  }
  return request;
}

Request Conversation::preliminaryScan() {
  Request request{.name = "preliminary scan",
                  .eventID = formats::request::preliminaryScan,
                  .answerID = formats::answer::citationResolution,
                  .documentID = upTo(UINT32_MAX)};
  request.texts.resize(citationCount());
  std::vector<formats::CitationPair> pairs;
  for (std::string &text : request.texts) {
    text = group();
    pairs.push_back({text, ""});
  }
  request.payload = formats::encodePreliminaryScanRequest(request.documentID, pairs);
  return request;
}

Request Conversation::next() {
  switch (upTo(7)) {
    case 0: {
      const auto payload = formats::encodeHandshake({.first = 1, .second = 2});
      return {.name = "handshake",
              .eventID = formats::request::handshake,
              .payload = {payload.data(), payload.size()},
              .answerID = formats::answer::preferences};
    }
    case 1:
      return {.name = "insert",
              .eventID = formats::request::insertCitation,
              .answerID = formats::answer::citation,
              .texts = {"Selected 1999"}};
    case 2:
      return {.name = "find", .eventID = formats::request::findCitation, .payload = group() + '\0'};
    case 3:
      return preliminaryScan();
    case 4:
      return scan("final scan", formats::request::finalScan);
    case 5:
      return scan("live bibliography", formats::request::liveBibliography);
    case 6:
      return {.name = "retired scan", .eventID = formats::request::scanCitations};
    default:
      return {.name = "retired import", .eventID = formats::request::importCitations};
  }
}

}  // namespace load_test
