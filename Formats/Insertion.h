// The citation that is inserted into a document ('cite'): its text and one XML record of it,
// both UTF-8 and NUL-terminated, nothing else.
#pragma once

#include "PayloadWriter.h"

#include <cstddef>
#include <expected>
#include <string>
#include <string_view>

namespace formats {

// Bytes that writeInsertion writes. The markup is what recordMarkupForInsertion makes of
// the citation.
std::size_t sizeOfInsertion(std::u16string_view citation, std::u16string_view markup);
void writeInsertion(PayloadWriter &writer, std::u16string_view citation,
                    std::u16string_view markup);

// What the word processor reads: UTF-8 views into the payload.
struct Insertion {
  std::string_view citation;
  std::string_view markup;
};

// Refuses what is cut short, or is followed by further bytes, with one line that says what
// is wrong.
std::expected<Insertion, std::string> decodeInsertion(std::string_view payload);

}  // namespace formats
