// UTF-8 and UTF-16, converted the same way everywhere.
//
// Texts inside payloads are UTF-8; Cocoa's strings are UTF-16 code units and may hold
// lone surrogates. What cannot be converted becomes U+FFFD, one for each maximal invalid
// subpart of UTF-8 (as the Unicode Standard recommends and browsers do) and one for each
// lone surrogate: nothing is lost silently and nothing fails.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

namespace formats {

std::u16string decodeUTF8(std::string_view bytes);
std::string encodeUTF8(std::u16string_view text);

// The character of a sequence; U+FFFD if the bytes are not exactly one character.
char32_t decodeUTF8Character(std::string_view sequence);

// Appends one character; U+FFFD for what is no Unicode scalar value.
void appendUTF8(std::string &text, char32_t character);

bool isASCII(std::string_view text);

// Copies as much of the text, from its start on, as is plain: ASCII without a NUL. Nearly every
// text is nothing else. Returns how many units that were. The buffer must have room for the whole
// text; what lies in that room behind the copied units may be overwritten.
std::size_t copyPlainASCII(std::u16string_view text, char *buffer);
std::size_t copyPlainASCII(std::string_view text, char *buffer);

// Fills the buffer with as many bytes of the encoded text as fit, if need be with a
// part of a character's bytes at its end. Returns the bytes that the whole text needs.
std::size_t encodeUTF8(std::u16string_view text, std::span<char> buffer);

// The bytes that encodeUTF8 yields, without making them.
std::size_t lengthInUTF8(std::u16string_view text);

}  // namespace formats
