// UTF-8 and UTF-16: converted like the definition says, unit by unit, in any buffer.

#include <Formats/Unicode.h>
#include <Fuzzing/Support/FuzzedData.h>
#include <Fuzzing/Support/Target.h>
#include <Tests/Support/ReferenceUnicode.h>

#include <memory>

namespace fuzzing {

namespace {

void decode(std::string_view bytes) {
  const std::u16string text = formats::decodeUTF8(bytes);
  require(text == reference::decodeUTF8(std::string(bytes)));
  // What was decoded is well-formed, so that it survives the way back and forth.
  require(formats::decodeUTF8(formats::encodeUTF8(text)) == text);
}

void encode(const std::u16string &text, std::size_t room) {
  const std::string bytes = formats::encodeUTF8(text);
  require(bytes == reference::encodeUTF8(text));
  require(formats::lengthInUTF8(text) == bytes.size());

  const std::size_t size = room * bytes.size() / 255;
  const std::unique_ptr<char[]> buffer(new char[size]);
  require(formats::encodeUTF8(text, {buffer.get(), size}) == bytes.size());
  require(bytes.starts_with(std::string_view(buffer.get(), size)));
}

}  // namespace

void run(std::string_view bytes) {
  decode(bytes);
  FuzzedData data(bytes);
  const std::size_t room = data.byte();
  encode(codeUnits(data.rest()), room);
}

}  // namespace fuzzing
