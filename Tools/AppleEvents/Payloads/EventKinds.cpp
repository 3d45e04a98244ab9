#include "EventKinds.h"

#include <Formats/EventTable.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>

namespace appleevents {

using formats::FourCharacterCode;

namespace {

constexpr FourCharacterCode mellel = formats::mellelSignature;
constexpr Sender host = Sender::host;
constexpr Sender wordProcessor = Sender::wordProcessor;

constexpr EventKind kinds[] = {
    {mellel, formats::answer::preferences, false, Layout::preferences, host, "preferences"},
    {mellel, formats::answer::cancel, false, Layout::cancel, host, "cancel"},
    {mellel, formats::request::handshake, false, Layout::handshake, wordProcessor, "handshake"},
    {mellel, formats::answer::finalScan, false, Layout::scanReply, host, "scan reply"},
    {mellel, formats::answer::citationResolution, false, Layout::citationResolution, host,
     "citation resolution"},
    {formats::insertionEventClass, formats::answer::citation, false, Layout::insertion, host,
     "citation to insert"},
    {mellel, formats::request::finalScan, false, Layout::scanRequest, wordProcessor, "final scan"},
    {mellel, formats::request::preliminaryScan, false, Layout::preliminaryScan, wordProcessor,
     "preliminary scan"},
    {mellel, formats::request::findCitation, false, Layout::find, wordProcessor,
     "find a reference"},
    {mellel, formats::request::insertCitation, false, Layout::nothing, wordProcessor,
     "insert the selection"},
    {mellel, formats::request::liveBibliography, false, Layout::scanRequest, wordProcessor,
     "live bibliography"},
    {mellel, formats::request::liveBibliography, true, Layout::scanReply, host,
     "reply to a live bibliography"},
    {mellel, formats::request::importCitations, false, Layout::nothing, wordProcessor,
     "import citations, which does nothing"},
    {mellel, formats::request::scanCitations, false, Layout::nothing, wordProcessor,
     "scan citations, which does nothing"},
};

bool isPlain(char character) {
  return character >= ' ' && character <= '~' && character != '\'' && character != '\\';
}

}  // namespace

std::span<const EventKind> eventKinds() { return kinds; }

std::optional<EventKind> findEventKind(FourCharacterCode eventClass, FourCharacterCode eventID,
                                       bool isReply) {
  const auto matches = [&](const EventKind &kind) {
    return kind.eventClass == eventClass && kind.eventID == eventID;
  };
  const auto *const known = std::ranges::find_if(
      kinds, [&](const EventKind &kind) { return matches(kind) && kind.isReply == isReply; });
  if (known != std::end(kinds)) {
    return *known;
  }
  const auto *const repliedTo = std::ranges::find_if(kinds, matches);
  if (!isReply || repliedTo == std::end(kinds)) {
    return std::nullopt;
  }
  return EventKind{eventClass,
                   eventID,
                   true,
                   Layout::nothing,
                   repliedTo->sender == host ? wordProcessor : host,
                   "reply without data"};
}

std::string inQuotes(FourCharacterCode code) {
  std::string characters;
  std::string number = "0x";
  for (int shift = 24; shift >= 0; shift -= 8) {
    const auto byte = static_cast<unsigned char>(code >> shift & 0xFF);
    characters += static_cast<char>(byte);
    number += "0123456789ABCDEF"[byte >> 4];
    number += "0123456789ABCDEF"[byte & 0xF];
  }
  return std::ranges::all_of(characters, isPlain) ? '\'' + characters + '\'' : number;
}

std::optional<FourCharacterCode> readCode(std::string_view text) {
  constexpr std::size_t length = 4;
  constexpr std::size_t numberLength = 10;
  FourCharacterCode code = 0;
  if (text.size() == numberLength && text.starts_with("0x")) {
    const char *const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data() + 2, end, code, 16);
    return error == std::errc() && stop == end ? std::optional(code) : std::nullopt;
  }
  if (text.size() == length + 2 && text.front() == '\'' && text.back() == '\'') {
    text = text.substr(1, length);
  }
  if (text.size() != length || !std::ranges::all_of(text, isPlain)) {
    return std::nullopt;
  }
  for (const char character : text) {
    code = code << 8 | static_cast<unsigned char>(character);
  }
  return code;
}

}  // namespace appleevents
