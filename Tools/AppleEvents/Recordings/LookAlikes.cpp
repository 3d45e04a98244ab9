#include "LookAlikes.h"

#include <Formats/EventTable.h>
#include <Formats/Unicode.h>
#include <Tools/AppleEvents/Payloads/Explanation.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdlib>

namespace appleevents {

namespace {

constexpr std::string_view marker = "verified";

bool isBetween(char character, char first, char last) {
  return character >= first && character <= last;
}
bool isUpper(char character) { return isBetween(character, 'A', 'Z'); }
bool isLower(char character) { return isBetween(character, 'a', 'z'); }
bool isDigit(char character) { return isBetween(character, '0', '9'); }
bool isLetter(char character) { return isUpper(character) || isLower(character); }

// Blanks and signs beyond ASCII, which say nothing of an author.
bool isSign(char32_t character) {
  return character < 0xC0 || character == 0xD7 || character == 0xF7 ||
         (character >= 0x2000 && character <= 0x206F) ||
         (character >= 0x3000 && character <= 0x303F) || character == 0xFFFD;
}

// The bytes of the character at the beginning of the text, 1 for what is none.
std::size_t sizeOfCharacter(std::string_view text) {
  const auto first = static_cast<unsigned char>(text.front());
  const std::size_t size = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : first >= 0xC0 ? 2 : 1;
  return std::min(size, text.size());
}

bool isOfWord(std::string_view character) {
  if (character.size() == 1) {
    return isLetter(character.front()) || isDigit(character.front());
  }
  return !isSign(formats::decodeUTF8Character(character));
}

std::string encoded(char32_t character) {
  std::string text;
  formats::appendUTF8(text, character);
  return text;
}

// A letter or a digit in place of the one that the text begins with.
std::string likeFirst(std::string_view text, std::uint64_t number) {
  switch (sizeOfCharacter(text)) {
    case 1: {
      const char first = text.front();
      const char base = isUpper(first) ? 'A' : isLower(first) ? 'a' : '0';
      return std::string(
          1, static_cast<char>(base + static_cast<int>(number % (isDigit(first) ? 10 : 26))));
    }
    case 2:
      return encoded(static_cast<char32_t>(0xE0 + number % 23));
    case 3:
      return encoded(static_cast<char32_t>(0x4E00 + number % 20000));
    default:
      return encoded(static_cast<char32_t>(0x20000 + number % 40000));
  }
}

constexpr std::array<std::string_view, 9> tags = {
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>",
    "<xml>",
    "</xml>",
    "<records>",
    "</records>",
    "<record><korvo>",
    "</korvo><rec-number>",
    "</rec-number></record>",
    "</record>",
};

}  // namespace

void LookAlikes::replaceIn(RecordedMessage &message) {
  const bool isReply = message.kind == RecordedMessage::Kind::reply;
  if (message.kind == RecordedMessage::Kind::event) {
    events_[message.number] = {message.eventClass, message.eventID};
  }
  const auto [eventClass, eventID] = events_[message.number];
  const auto kind = findEventKind(eventClass, eventID, isReply);
  for (RecordedParameter &parameter : message.parameters) {
    const bool isDirectObject = parameter.keyword == formats::directObjectKeyword;
    if (isDirectObject) {
      replaceInDirectObject(kind, parameter.bytes);
    } else if (parameter.type == formats::textDescriptorType) {
      parameter.bytes = ofText(parameter.bytes);
    }
  }
}

void LookAlikes::replaceInDirectObject(const std::optional<EventKind> &kind, std::string &bytes) {
  if (!kind) {
    bytes = ofText(bytes);
    return;
  }
  std::string replaced = bytes;
  const Explanation explanation = explain(*kind, bytes);
  for (const Field &field : explanation.fields) {
    const auto put = [&](const std::string &text) {
      replaced.replace(field.offset, text.size(), text);
    };
    const bool isSurplus = field.content == Content::bytes && field.name == "surplus";
    if (field.content == Content::citation || isSurplus) {
      put(ofText(field.bytes));
    } else if (field.content == Content::records) {
      put(ofRecords(field.bytes));
    } else if (field.content == Content::pidginRTF || field.content == Content::rtf) {
      put(ofRTF(field.bytes));
    }
  }
  bytes = std::move(replaced);
}

std::string LookAlikes::ofText(std::string_view text) {
  std::string replaced;
  std::string word;
  const auto finishWord = [&] {
    replaced += word.empty() ? "" : ofWord(word);
    word.clear();
  };
  while (!text.empty()) {
    const std::string_view character = text.substr(0, sizeOfCharacter(text));
    if (isOfWord(character)) {
      word += character;
    } else {
      finishWord();
      replaced += character;
    }
    text.remove_prefix(character.size());
  }
  finishWord();
  return replaced;
}

std::string LookAlikes::ofRecords(std::string_view records) {
  std::string replaced;
  std::size_t start = 0;  // of what was not replaced yet
  for (std::size_t position = 0; position < records.size();) {
    const auto *const tag = std::ranges::find_if(
        tags, [&](std::string_view each) { return records.substr(position).starts_with(each); });
    if (tag == tags.end()) {
      ++position;
      continue;
    }
    replaced.append(ofText(records.substr(start, position - start))).append(*tag);
    position += tag->size();
    start = position;
  }
  return replaced + ofText(records.substr(start));
}

std::string LookAlikes::ofRTF(std::string_view rtf) {
  std::string replaced;
  while (!rtf.empty()) {
    const std::size_t plain = std::min(rtf.find('\\'), rtf.size());
    replaced += ofText(rtf.substr(0, plain));
    rtf.remove_prefix(plain);
    std::size_t end = std::min<std::size_t>(1, rtf.size());
    while (end < rtf.size() && isLetter(rtf[end])) {
      ++end;
    }
    const std::string_view word = rtf.substr(0, end);
    const std::size_t numberStart = end;
    end += rtf.substr(end).starts_with('-') ? 1 : 0;
    while (end < rtf.size() && isDigit(rtf[end])) {
      ++end;
    }
    if (word == "\\") {
      // A sign, with the two digits of a character where it is an apostrophe.
      end = std::min<std::size_t>(rtf.substr(1).starts_with('\'') ? 4 : 2, rtf.size());
      const bool isForeign = end == 4 && rtf[2] >= 'c';
      replaced += isForeign ? ofByte(std::string(rtf.substr(0, end))) : rtf.substr(0, end);
    } else if (word == "\\u") {
      replaced.append(word).append(ofEscape(rtf.substr(numberStart, end - numberStart)));
    } else {
      replaced += rtf.substr(0, end);
    }
    rtf.remove_prefix(end);
  }
  return replaced;
}

const std::string &LookAlikes::ofWord(const std::string &word) {
  const auto [place, isNew] = words_.try_emplace(word);
  if (!isNew || word == marker) {
    return word == marker ? place->first : place->second;
  }
  // Of short words there are few.
  constexpr int attempts = 50;
  std::string &replaced = place->second;
  for (int attempt = 0; attempt < attempts; ++attempt) {
    replaced.clear();
    for (std::string_view rest = word; !rest.empty(); rest.remove_prefix(sizeOfCharacter(rest))) {
      replaced += likeFirst(rest, random());
    }
    if (replaced != word && replaced != marker && taken_.insert(replaced).second) {
      break;
    }
  }
  return replaced;
}

std::uint64_t LookAlikes::random() {
  // SplitMix64: the same on every machine.
  state_ += 0x9E3779B97F4A7C15;
  std::uint64_t number = state_;
  number = (number ^ number >> 30) * 0xBF58476D1CE4E5B9;
  number = (number ^ number >> 27) * 0x94D049BB133111EB;
  return number ^ number >> 31;
}

// A byte beyond ASCII, written as RTF does it.
const std::string &LookAlikes::ofByte(const std::string &escape) {
  const auto [place, isNew] = words_.try_emplace(escape);
  if (isNew) {
    place->second = "\\'e" + std::to_string(random() % 10);
  }
  return place->second;
}

// One UTF-16 unit as a number, in as many digits.
std::string LookAlikes::ofEscape(std::string_view number) {
  int value = 0;
  std::from_chars(number.data(), number.data() + number.size(), value);
  const auto unit = static_cast<char16_t>(value);
  const bool isLowSurrogate = unit >= 0xDC00 && unit <= 0xDFFF;
  const bool isHighSurrogate = unit >= 0xD800 && unit <= 0xDBFF;
  if (isSign(unit) || isHighSurrogate || value < -32768 || value > 32767) {
    return std::string(number);
  }
  const auto [place, isNew] = words_.try_emplace("\\u" + std::string(number));
  if (isNew) {
    const std::uint64_t choice = random();
    const auto from = [&](int first, std::uint64_t count) {
      return std::to_string(first + static_cast<int>(choice % count));
    };
    const std::size_t digits = number.size() - (value < 0 ? 1 : 0);
    std::string &replaced = place->second;
    replaced = isLowSurrogate             ? from(-9216, 1000)
               : value < 0 && digits == 5 ? from(-24999, 5000)
               : value > 0 && digits == 5 ? from(19968, 10000)
               : value > 0 && digits == 4 ? from(1072, 32)
               : value > 0 && digits == 3 ? from(224, 23)
                                          : std::string(number);
    if (replaced.size() != number.size()) {
      replaced = number;
    }
  }
  return place->second;
}

}  // namespace appleevents
