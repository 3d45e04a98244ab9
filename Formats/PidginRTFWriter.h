// Writes pidgin RTF: plain text with five character attributes and nothing else, no header,
// no fonts, no paragraphs.
//
// An attribute is a group, "{\b bold}". Groups nest in one fixed order, from the outside:
// underline, italic, bold, superscript, subscript. Everything above ASCII is written as
// the escape of a single UTF-16 code unit, so the result is ASCII.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace formats {

struct PidginAttributes {
  bool bold = false;
  bool italic = false;
  bool underline = false;
  bool superscript = false;
  bool subscript = false;

  bool operator==(const PidginAttributes &) const = default;
};

// Whether "'", "{", "}", "\" and line feed are escaped or stand as they are. All other ASCII
// stands as it is either way; everything above is escaped either way.
enum class ControlCharacters : std::uint8_t { raw, escaped };

// Appends a text without any groups.
void appendPidginRTF(std::u16string &output, std::u16string_view text,
                     ControlCharacters controlCharacters);
std::u16string pidginRTF(std::u16string_view text, ControlCharacters controlCharacters);

// Writes attributed text run by run; a run may be a single code unit. Neighbouring runs with the
// same attributes share their groups.
class PidginRTFWriter {
 public:
  // The expected length of the text, in code units, is a hint.
  explicit PidginRTFWriter(std::size_t expectedLength = 0);

  void append(std::u16string_view text, const PidginAttributes &attributes);
  // The same for a text of one code unit, for callers who learn the attributes unit by unit.
  void append(char16_t unit, const PidginAttributes &attributes);
  // Closes all groups and hands over the result; the writer is as new afterwards.
  std::u16string finish();

 private:
  void changeGroups(unsigned groups);

  std::u16string output_;
  unsigned openGroups_ = 0;  // a bit for each group, the outermost the lowest
};

}  // namespace formats
