// Takes what authors wrote out of a recording, so that it can be sent to strangers.
#pragma once

#include "Recording.h"

#include <Formats/FourCharacterCode.h>
#include <Tools/AppleEvents/Payloads/EventKinds.h>

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>

namespace appleevents {

// Each word becomes another one of the same bytes in number: letters become letters and digits
// digits, and the same word becomes the same one everywhere. What the conversation is made of
// stays: numbers of fields, the syntax of citations, the marker "verified", tags of records,
// control words of RTF, and names of styles. What a word becomes does not depend on what it was:
// nothing of it is left but its length, its capitals and where it comes again.
class LookAlikes {
 public:
  // Messages in the order in which they were recorded.
  void replaceIn(RecordedMessage &message);

 private:
  void replaceInDirectObject(const std::optional<EventKind> &kind, std::string &bytes);
  std::string ofText(std::string_view text);
  std::string ofRecords(std::string_view records);
  std::string ofRTF(std::string_view rtf);
  const std::string &ofWord(const std::string &word);
  const std::string &ofByte(const std::string &escape);
  std::string ofEscape(std::string_view number);
  std::uint64_t random();

  // Of the events so far, for their replies.
  std::map<std::size_t, std::pair<formats::FourCharacterCode, formats::FourCharacterCode>> events_;
  std::map<std::string, std::string, std::less<>> words_;
  std::set<std::string, std::less<>> taken_;
  std::uint64_t state_ = 0;
};

}  // namespace appleevents
