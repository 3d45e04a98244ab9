// The encodings of imported files: any bytes are read as some text; UTF-8 exactly, and whatever is
// guessed is said to be.

#include <Formats/Unicode.h>
#include <Fuzzing/Support/Target.h>
#include <StandIns/Korvo/Engine/TextFile.h>

namespace fuzzing {

namespace {

std::string bytesInUTF16(std::u16string_view text, bool bigEndian) {
  std::string bytes;
  for (const char16_t unit : text) {
    const auto high = static_cast<char>(unit >> 8U);
    const auto low = static_cast<char>(unit & 0xFFU);
    bytes += bigEndian ? high : low;
    bytes += bigEndian ? low : high;
  }
  return bytes;
}

}  // namespace

void run(std::string_view bytes) {
  const korvo::engine::TextFile file = korvo::engine::decodeText(bytes);
  const bool isBigEndian = bytes.starts_with("\xFE\xFF");
  if (isBigEndian || bytes.starts_with("\xFF\xFE")) {
    // A single byte at the end makes no character.
    require(!file.isGuessed);
    require(bytesInUTF16(file.text, isBigEndian) == bytes.substr(2, (bytes.size() - 2) / 2 * 2));
    return;
  }
  const std::size_t mark = bytes.starts_with("\xEF\xBB\xBF") ? 3 : 0;
  const std::string_view content = bytes.substr(mark);
  if (file.isGuessed) {
    require(file.text.size() == content.size());
  } else {
    require(formats::encodeUTF8(file.text) == content);
  }
}

}  // namespace fuzzing
