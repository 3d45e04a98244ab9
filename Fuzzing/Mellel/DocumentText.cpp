// Reading any bytes as RTF: the tokens are the bytes, and the events of the text follow one another
// through the document, well nested, in well-formed UTF-8.

#include <Formats/Unicode.h>
#include <Fuzzing/Support/Target.h>
#include <StandIns/Mellel/RTF/Lexer.h>
#include <StandIns/Mellel/RTF/TextReader.h>

namespace fuzzing {

namespace {

using mellel::rtf::TextEvent;
using mellel::rtf::TextEventKind;
using mellel::rtf::TokenKind;

void cutIntoTokens(std::string_view rtf) {
  mellel::rtf::Lexer lexer(rtf);
  std::size_t position = 0;
  for (;;) {
    const mellel::rtf::Token token = lexer.next();
    require(token.begin == position && token.end <= rtf.size());
    if (token.kind == TokenKind::end) {
      require(position == rtf.size() && token.end == position);
      require(lexer.next().kind == TokenKind::end);
      return;
    }
    require(token.begin < token.end);
    require(token.kind != TokenKind::unfinished || token.end == rtf.size());
    position = token.end;
  }
}

bool isWellFormed(std::string_view text) {
  return formats::encodeUTF8(formats::decodeUTF8(text)) == text;
}

void readText(std::string_view rtf) {
  mellel::rtf::TextReader reader(rtf);
  std::size_t position = 0;
  std::size_t depth = 0;
  for (;;) {
    const TextEvent event = reader.next();
    if (event.kind == TextEventKind::failure) {
      require(!reader.error().empty() && reader.error().find('\n') == std::string::npos);
      require(reader.next().kind == TextEventKind::failure);
      return;
    }
    require(reader.error().empty());
    require(event.begin >= position && event.begin <= event.end && event.end <= rtf.size());
    position = event.end;
    switch (event.kind) {
      case TextEventKind::text:
        require(isWellFormed(event.text));
        require(!event.isContinuation || event.text.empty());
        break;
      case TextEventKind::storyBegin:
        ++depth;
        break;
      case TextEventKind::storyEnd:
        require(depth-- > 0);
        break;
      case TextEventKind::documentEnd:
        require(depth == 0 && reader.isInMainText());
        require(reader.endOfMainText() <= rtf.size());
        return;
      case TextEventKind::paragraphEnd:
      case TextEventKind::failure:
        break;
    }
    require(reader.isInMainText() == (depth == 0));
  }
}

}  // namespace

void run(std::string_view bytes) {
  cutIntoTokens(bytes);
  readText(bytes);
}

}  // namespace fuzzing
