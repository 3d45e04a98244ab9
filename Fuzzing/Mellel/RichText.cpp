// Formatted text between two dialects: what the plug-in's writer writes is read back as the same
// text with the same formatting, and what was read from any pidgin RTF survives being put in a
// document.

#include "NormalText.h"

#include <Formats/PidginRTFWriter.h>
#include <Formats/Unicode.h>
#include <Fuzzing/Support/FuzzedData.h>
#include <Fuzzing/Support/Target.h>
#include <StandIns/Mellel/RTF/RichText.h>

#include <vector>

namespace fuzzing {

namespace {

using mellel::rtf::CharacterLooks;
using mellel::rtf::RichText;

void rewrite(std::string_view pidgin) {
  const auto formatted = mellel::rtf::readPidginRTF(pidgin);
  if (!formatted) {
    require(!formatted.error().empty() && formatted.error().find('\n') == std::string::npos);
    return;
  }
  const auto again = mellel::rtf::readPidginRTF(mellel::rtf::groupOfText(*formatted));
  require(again.has_value());
  require(isSameText(*again, *formatted));
}

// Characters that RTF takes for layout of its source when they are not escaped, or that no text
// has: what they become is not the writer's to say.
bool isPlain(char16_t unit) { return unit >= 0x20 && unit != 0x7F; }

struct Run {
  std::u16string text;
  formats::PidginAttributes attributes;
};

std::vector<Run> runsIn(FuzzedData data) {
  std::vector<Run> runs;
  while (!data.isAtEnd()) {
    const unsigned bits = data.byte();
    std::u16string text = data.units();
    std::erase_if(text, [](char16_t unit) { return unit != u'\n' && !isPlain(unit); });
    const bool isSubscript = (bits & 16U) != 0;
    const formats::PidginAttributes attributes{.bold = (bits & 1U) != 0,
                                               .italic = (bits & 2U) != 0,
                                               .underline = (bits & 4U) != 0,
                                               .superscript = (bits & 8U) != 0 && !isSubscript,
                                               .subscript = isSubscript};
    if (text.empty()) {
      continue;
    }
    if (!runs.empty() && runs.back().attributes == attributes) {
      runs.back().text += text;
    } else {
      runs.push_back({text, attributes});
    }
  }
  return runs;
}

// The first half of a character, alone, reads as nothing.
std::string asRead(std::u16string text) {
  const auto isHigh = [](char16_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; };
  const auto isLow = [](char16_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; };
  std::u16string whole;
  for (std::size_t index = 0; index < text.size(); ++index) {
    if (!isHigh(text[index]) || (index + 1 < text.size() && isLow(text[index + 1]))) {
      whole += text[index];
    }
  }
  return formats::encodeUTF8(whole);
}

void writeAndRead(const std::vector<Run> &runs) {
  formats::PidginRTFWriter writer;
  RichText expected;
  for (const Run &run : runs) {
    writer.append(run.text, run.attributes);
    CharacterLooks looks;
    looks.isBold = run.attributes.bold;
    looks.isItalic = run.attributes.italic;
    looks.isUnderlined = run.attributes.underline;
    looks.isSuperscript = run.attributes.superscript;
    looks.isSubscript = run.attributes.subscript;
    mellel::rtf::appendText(expected, asRead(run.text), looks);
  }
  const auto read = mellel::rtf::readPidginRTF(formats::encodeUTF8(writer.finish()));
  require(read.has_value());
  require(isSameText(*read, expected));
}

}  // namespace

void run(std::string_view bytes) {
  rewrite(bytes);
  writeAndRead(runsIn(FuzzedData(bytes)));
}

}  // namespace fuzzing
