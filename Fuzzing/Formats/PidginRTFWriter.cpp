// The writer of pidgin RTF: it writes what the slow reference writes, however the text is cut into
// runs, in ASCII, with balanced braces.

#include <Formats/PidginRTFWriter.h>
#include <Fuzzing/Support/FuzzedData.h>
#include <Fuzzing/Support/Target.h>
#include <Tests/Support/ReferencePidginRTF.h>

#include <algorithm>
#include <vector>

namespace fuzzing {

namespace {

struct Run {
  std::u16string text;
  formats::PidginAttributes attributes;
};

std::vector<Run> runsIn(FuzzedData data) {
  std::vector<Run> runs;
  while (!data.isAtEnd()) {
    const unsigned bits = data.byte();
    runs.push_back({data.units(),
                    {.bold = (bits & 1U) != 0,
                     .italic = (bits & 2U) != 0,
                     .underline = (bits & 4U) != 0,
                     .superscript = (bits & 8U) != 0,
                     .subscript = (bits & 16U) != 0}});
  }
  return runs;
}

bool isASCII(std::u16string_view text) {
  return std::ranges::all_of(text, [](char16_t unit) { return unit < 0x80; });
}

// Braces of the text are written as numbers, so all that are left are those of groups.
bool isBalanced(std::u16string_view rtf) {
  std::size_t depth = 0;
  for (const char16_t unit : rtf) {
    if (unit == u'}' && depth == 0) {
      return false;
    }
    depth = unit == u'{' ? depth + 1 : unit == u'}' ? depth - 1 : depth;
  }
  return depth == 0;
}

void writePlainText(const std::u16string &text) {
  using enum formats::ControlCharacters;
  for (const auto control : {raw, escaped}) {
    const std::u16string rtf = formats::pidginRTF(text, control);
    require(rtf == reference::pidginRTF(text, control == escaped));
    require(isASCII(rtf));
    std::u16string appended = u"before";
    formats::appendPidginRTF(appended, text, control);
    require(appended == u"before" + rtf);
  }
}

void writeAttributedText(const std::vector<Run> &runs) {
  std::u16string text;
  std::vector<formats::PidginAttributes> attributes;
  formats::PidginRTFWriter runByRun;
  formats::PidginRTFWriter unitByUnit;
  for (const Run &run : runs) {
    runByRun.append(run.text, run.attributes);
    for (const char16_t unit : run.text) {
      unitByUnit.append(unit, run.attributes);
    }
    text += run.text;
    attributes.resize(text.size(), run.attributes);
  }
  const std::u16string rtf = runByRun.finish();
  require(rtf == reference::pidginRTF(text, attributes));
  require(rtf == unitByUnit.finish());
  require(isASCII(rtf));
  require(isBalanced(rtf));
  require(runByRun.finish().empty());
}

}  // namespace

void run(std::string_view bytes) {
  writePlainText(codeUnits(bytes));
  writeAttributedText(runsIn(FuzzedData(bytes)));
}

}  // namespace fuzzing
