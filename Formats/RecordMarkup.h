// The small XML texts that accompany citations on the wire. Nothing in them is escaped:
// the readers on the other side take the text between the tags as it stands.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace formats {

// The pieces of a citation string between ";", in order, empty ones kept. At least one.
std::vector<std::u16string_view> citationComponents(std::u16string_view citation);

// The XML text of a citation: a record for every component (markers "verified " removed),
// or nothing at all for an empty citation.
std::u16string recordMarkupForComponents(std::u16string_view citation);

// The bytes that PayloadWriter::writeString writes of that, without making it.
std::size_t sizeOfRecordMarkupForComponents(std::u16string_view citation);

// The XML text of an insertion: one record with the whole text, whatever it holds.
std::u16string recordMarkupForInsertion(std::u16string_view citation);

// The reader's side: the texts between <korvo> and </korvo>, in order. Views into the
// argument. Text outside the tags is passed over.
std::vector<std::string_view> tagsInRecordMarkup(std::string_view markup);

}  // namespace formats
