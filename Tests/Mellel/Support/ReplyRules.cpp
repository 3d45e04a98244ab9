#include "ReplyRules.h"

#include <Formats/Unicode.h>
#include <Tests/Support/ReferenceRecordMarkup.h>
#include <Tests/Support/ReferenceRewriting.h>
#include <Tests/Support/ReferenceUnicode.h>
#include <Tests/Support/SlowReader.h>

#include <algorithm>
#include <iterator>

namespace mellel_test {

namespace {

using test_support::isBlankCharacter;
using test_support::SlowReader;

std::string wellFormed(const std::string &text) {
  return formats::encodeUTF8(reference::decodeUTF8(text));
}

SlowText charactersOf(const std::string &text) {
  SlowText characters;
  const std::u16string units = reference::decodeUTF8(text);
  for (std::size_t index = 0; index < units.size(); ++index) {
    char32_t character = units[index];
    if (character >= 0xD800 && character < 0xDC00) {
      character = 0x10000 + ((character - 0xD800) << 10) + (units[++index] - 0xDC00U);
    }
    characters.push_back({character, {}, 0, 0});
  }
  return characters;
}

// What can be written into a paragraph: a break ends the line, no other control character stays.
SlowText writable(const SlowText &text) {
  SlowText written;
  for (SlowCharacter character : text) {
    if (character.character == '\n' || character.character == 0x2029 ||
        character.character == paragraphEnd) {
      character.character = 0x2028;
    }
    if (character.character == '\t' ||
        (character.character >= 0x20 && character.character != 0x7F)) {
      written.push_back(character);
    }
  }
  return written;
}

bool isBlank(const SlowText &text) {
  return std::ranges::all_of(text, [](const SlowCharacter &character) {
    return isBlankCharacter(plainText({character}));
  });
}

// The blank after an escaped brace or backslash belongs to the escape.
std::optional<SlowText> pidginText(const std::string &pidgin) {
  std::string rtf = "{\\rtf1\\ansi\\ansicpg65001 ";
  for (std::size_t index = 0; index < pidgin.size(); ++index) {
    rtf += pidgin[index];
    if (pidgin[index] != '\\' || index + 1 == pidgin.size()) {
      continue;
    }
    rtf += pidgin[++index];
    const std::string digits = pidgin.substr(index + 1, 2);
    const bool isEscape =
        pidgin[index] == '\'' && (digits == "7b" || digits == "7B" || digits == "7d" ||
                                  digits == "7D" || digits == "5c" || digits == "5C");
    if (isEscape) {
      rtf += pidgin.substr(index + 1, 2);
      index += 2;
      index += pidgin.substr(index + 1).starts_with(' ') ? 1 : 0;
    }
  }
  return slowText(rtf + '}');
}

// Of all citations in these tests only this one begins like this.
bool asksToBeHidden(const std::string &citation) { return citation.starts_with('!'); }

bool isFormatted(const SlowText &text, const std::string &citation) {
  if (isBlank(text)) {
    return asksToBeHidden(citation);
  }
  return text.front().character != '{' || text.back().character != '}';
}

struct Entries {
  std::vector<SlowText> all;

  // Whole ones end with a paragraph's end.
  static Entries in(const SlowText &bibliography) {
    Entries entries;
    entries.all.emplace_back();
    for (const SlowCharacter &character : bibliography) {
      entries.all.back().push_back(character);
      if (character.character == paragraphEnd) {
        entries.all.emplace_back();
      }
    }
    while (!entries.all.empty() && isBlankEntry(entries.all.back())) {
      entries.all.pop_back();
    }
    while (!entries.all.empty() && isBlankEntry(entries.all.front())) {
      entries.all.erase(entries.all.begin());
    }
    return entries;
  }

  static bool isBlankEntry(SlowText entry) {
    std::erase_if(
        entry, [](const SlowCharacter &character) { return character.character == paragraphEnd; });
    return isBlank(entry);
  }
};

void append(SlowText &text, const SlowText &more) {
  text.insert(text.end(), more.begin(), more.end());
}

struct ReadReply {
  std::string styleName;
  std::vector<std::string> groups;
  std::optional<std::string> bibliography;
};

std::optional<ReadReply> readReply(const std::string &payload, std::uint32_t documentID,
                                   std::size_t citationCount) {
  SlowReader reader(payload);
  ReadReply reply;
  reader.integer(2);
  const bool belongs = reader.integer(4) == documentID;
  reader.integer(5);
  reader.integer(1);
  const bool hasBibliography = reader.integer(1) != 0;
  reader.integer(1);
  reply.styleName = reader.string();
  const std::uint32_t count = reader.integer(4);
  for (std::uint32_t group = 0; group < count && !reader.isCutShort(); ++group) {
    reply.groups.push_back(reader.string());
  }
  if (hasBibliography) {
    reply.bibliography = reader.rest();
  }
  const bool isWhole = !reader.isCutShort() && reader.isAtEnd();
  return isWhole && belongs && count == citationCount ? std::optional(reply) : std::nullopt;
}

SlowText charactersOf(const Draft &draft) { return slowText(draft.rtf).value(); }

// The characters of the draft, cut behind and before each pair of braces.
std::vector<SlowText> piecesOf(const Draft &draft) {
  std::vector<SlowText> pieces(1);
  const SlowText characters = charactersOf(draft);
  for (const SlowCharacter &character : characters) {
    if (character.character == '{') {
      pieces.emplace_back();
    }
    pieces.back().push_back(character);
    if (character.character == '}') {
      pieces.emplace_back();
    }
  }
  return pieces;
}

std::string counted(std::size_t count, const std::string &one, const std::string &several) {
  return std::to_string(count) + ' ' + (count == 1 ? one : several);
}

}  // namespace

bool isForAnother(const std::string &payload, std::uint32_t documentID) {
  SlowReader reader(payload);
  reader.integer(2);
  const bool isAnother = reader.integer(4) != documentID;
  return isAnother && !reader.isCutShort();
}

std::optional<FormattedCopy> copyFromScanReply(const Draft &draft, std::uint32_t documentID,
                                               const std::string &payload) {
  const auto reply = readReply(payload, documentID, draft.citations.size());
  if (!reply) {
    return std::nullopt;
  }
  std::vector<SlowText> pieces = piecesOf(draft);
  std::size_t formatted = 0;
  std::string unformatted;
  for (std::size_t index = 0; index < draft.citations.size(); ++index) {
    const auto text = pidginText(wellFormed(reply->groups[index]));
    if (!text) {
      return std::nullopt;
    }
    if (isFormatted(*text, draft.citations[index])) {
      pieces[2 * index + 1] = writable(*text);
      ++formatted;
    } else {
      unformatted += "not formatted: {" + draft.citations[index] + "}\n";
    }
  }
  std::string ofBibliography = "none came with the answer\n";
  if (reply->bibliography) {
    // No bytes are no document, and no entries.
    const auto bibliography =
        reply->bibliography->empty() ? SlowText() : slowText(*reply->bibliography);
    if (!bibliography) {
      return std::nullopt;
    }
    const Entries entries = Entries::in(*bibliography);
    ofBibliography = "it has no entries\n";
    if (!entries.all.empty()) {
      ofBibliography =
          counted(entries.all.size(), "entry", "entries") + " in place of {bibliography}\n";
      SlowText &place = pieces[pieces.size() - 2];
      place.clear();
      for (SlowText entry : entries.all) {
        SlowCharacter end = entry.empty() ? SlowCharacter() : entry.back();
        end.character = paragraphEnd;
        if (!entry.empty() && entry.back().character == paragraphEnd) {
          entry.pop_back();
        }
        append(place, writable(entry));
        place.push_back(end);
      }
      // The last entry has ended the place's paragraph.
      pieces.back().erase(pieces.back().begin());
    }
  }
  FormattedCopy copy;
  for (const SlowText &piece : pieces) {
    append(copy.text, piece);
  }
  copy.report = "style: " + withoutControls(reply->styleName) +
                "\nformatted: " + std::to_string(formatted) + " of " +
                counted(draft.citations.size(), "citation", "citations") + '\n' + unformatted +
                "bibliography: " + ofBibliography;
  return copy;
}

std::optional<std::vector<LookedUp>> lookedUpIn(std::size_t citationCount, std::uint32_t documentID,
                                                const std::string &payload) {
  SlowReader reader(payload);
  reader.integer(2);
  const bool belongs = reader.integer(4) == documentID;
  const std::uint32_t count = reader.integer(4);
  std::vector<LookedUp> found;
  for (std::uint32_t citation = 0; citation < count && !reader.isCutShort(); ++citation) {
    const std::string text = reader.string();
    LookedUp &entry = found.emplace_back(wellFormed(text));
    for (const std::string &record : reference::tagsInRecordMarkup(reader.string())) {
      entry.records.push_back(wellFormed(record));
    }
  }
  const bool isWhole = !reader.isCutShort() && reader.isAtEnd();
  return isWhole && belongs && count == citationCount ? std::optional(found) : std::nullopt;
}

std::optional<std::string> citationIn(const std::string &payload) {
  SlowReader reader(payload);
  std::string citation = wellFormed(reader.string());
  reader.string();
  return !reader.isCutShort() && reader.isAtEnd() ? std::optional(citation) : std::nullopt;
}

namespace {

bool commandsATerminal(char16_t unit) {
  const std::u16string_view turning = u"\u202A\u202B\u202C\u202D\u202E\u2066\u2067\u2068\u2069";
  return unit < 0x20 || (unit >= 0x7F && unit <= 0x9F) || unit == 0x2028 || unit == 0x2029 ||
         turning.find(unit) != std::u16string_view::npos;
}

}  // namespace

std::string withoutControls(const std::string &text) {
  std::u16string units = reference::decodeUTF8(text);
  std::ranges::replace_if(units, commandsATerminal, u' ');
  return formats::encodeUTF8(units);
}

std::string inJSON(const std::string &text) {
  constexpr std::string_view digits = "0123456789abcdef";
  std::u16string json = u"\"";
  for (const char16_t unit : reference::decodeUTF8(text)) {
    if (commandsATerminal(unit)) {
      json += u"\\u";
      for (const int shift : {12, 8, 4, 0}) {
        json += static_cast<char16_t>(digits[unit >> shift & 15U]);
      }
    } else {
      json += unit == u'"' || unit == u'\\' ? u"\\" : u"";
      json += unit;
    }
  }
  return formats::encodeUTF8(json + u'"');
}

SlowText withInsertion(const Draft &draft, const std::string &after, const std::string &text) {
  SlowText characters = charactersOf(draft);
  const SlowText wanted = charactersOf(after);
  const auto found = std::search(characters.begin(), characters.end(), wanted.begin(), wanted.end(),
                                 [](const SlowCharacter &left, const SlowCharacter &right) {
                                   return left.character == right.character;
                                 });
  const SlowText inserted = writable(charactersOf(text));
  characters.insert(std::next(found, static_cast<std::ptrdiff_t>(wanted.size())), inserted.begin(),
                    inserted.end());
  return characters;
}

bool showTheSame(const SlowText &left, const SlowText &right) {
  return std::ranges::equal(left, right, [](const SlowCharacter &one, const SlowCharacter &other) {
    if (one.character != other.character) {
      return false;
    }
    return one.character == paragraphEnd
               ? one.leftIndent == other.leftIndent && one.firstLineIndent == other.firstLineIndent
               : one.format == other.format;
  });
}

}  // namespace mellel_test
