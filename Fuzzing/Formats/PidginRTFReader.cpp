// The lenient reader of pidgin RTF: it reads anything, like the slow reference reads it.

#include <Formats/PidginRTFReader.h>
#include <Fuzzing/Support/FuzzedData.h>
#include <Fuzzing/Support/Target.h>
#include <Tests/Support/ReferencePidginRTF.h>

namespace fuzzing {

void run(std::string_view bytes) {
  const std::u16string rtf = codeUnits(bytes);
  bool hasUnknownCharacter = false;
  const std::u16string text =
      formats::textOfPidginRTF(rtf, [&](std::u16string_view) { hasUnknownCharacter = true; });
  require(text == reference::textOfPidginRTF(rtf));
  require(text.size() <= rtf.size());
  // Every character that begins a control sequence has a meaning.
  require(!hasUnknownCharacter);
}

}  // namespace fuzzing
