// Text with the character formatting that a citation or a bibliography entry may have, read
// from RTF and written as a piece of RTF that fits into any document.
//
// A piece brings no fonts, sizes or colours of its own: it takes them from where it is put.
#pragma once

#include "Formatting.h"

#include <cstdint>
#include <expected>
#include <string>
#include <string_view>
#include <vector>

namespace mellel::rtf {

// Adjacent characters with the same looks.
struct TextRun {
  std::string text;  // UTF-8; U+2028 breaks the line within the paragraph
  CharacterLooks looks{};
};

using RichText = std::vector<TextRun>;

// Appends text with these looks, to the last run if that has them too.
void appendText(RichText &formatted, std::string_view text, const CharacterLooks &looks);

// The characters without the formatting, UTF-8.
std::string plainText(const RichText &formatted);

// RTF for the text, ASCII only, each formatted run a group of its own. Characters are written
// as \u without fallback: what goes around it must say \uc0.
std::string rtfOfText(const RichText &formatted);

// A group that can stand wherever a character can stand, and leaves nothing behind it changed. It
// takes the looks of its place, but for those to be ended.
std::string groupOfText(const RichText &formatted, const CharacterLooks &ended = {});

// A formatted citation as it comes from the host: RTF without header, with character formatting
// only. Refused with one line if it is not well-formed.
std::expected<RichText, std::string> readPidginRTF(std::string_view pidgin);

}  // namespace mellel::rtf
