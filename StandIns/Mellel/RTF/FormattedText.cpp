#include "FormattedText.h"

#include "Escape.h"
#include "Lexer.h"
#include "TextReader.h"

#include <Formats/Unicode.h>

#include <utility>

namespace mellel::rtf {

namespace {

constexpr std::string_view lineSeparator = "\xE2\x80\xA8";

FormattedRun emptyRun(const CharacterFormat &format) {
  return {{},
          format.isBold,
          format.isItalic,
          format.isUnderlined,
          format.isSuperscript,
          format.isSubscript,
          format.isSmallCapitals};
}

bool haveSameFormat(const FormattedRun &left, const FormattedRun &right) {
  return left.isBold == right.isBold && left.isItalic == right.isItalic &&
         left.isUnderlined == right.isUnderlined && left.isSuperscript == right.isSuperscript &&
         left.isSubscript == right.isSubscript && left.isSmallCapitals == right.isSmallCapitals;
}

std::string controlWords(const FormattedRun &run) {
  std::string words;
  const auto add = [&](bool isOn, std::string_view word) {
    if (isOn) {
      words += word;
    }
  };
  add(run.isUnderlined, "\\ul");
  add(run.isItalic, "\\i");
  add(run.isBold, "\\b");
  add(run.isSmallCapitals, "\\scaps");
  add(run.isSuperscript, "\\super");
  add(run.isSubscript, "\\sub");
  return words;
}

// In pidgin RTF the blank after an escaped brace or backslash belongs to the escape, which in
// RTF proper it does not.
std::string withoutBlanksOfEscapes(std::string_view pidgin) {
  std::string rtf;
  Lexer lexer(pidgin);
  for (Token token = lexer.next(); token.kind != TokenKind::end; token = lexer.next()) {
    rtf += pidgin.substr(token.begin, token.end - token.begin);
    const bool isEscape = token.kind == TokenKind::hexByte &&
                          (token.byte == '{' || token.byte == '}' || token.byte == '\\');
    if (isEscape && pidgin.substr(token.end).starts_with(' ')) {
      lexer = Lexer(pidgin, token.end + 1);
    }
  }
  return rtf;
}

}  // namespace

void appendText(FormattedText &formatted, std::string_view text, const CharacterFormat &format) {
  if (text.empty()) {
    return;
  }
  FormattedRun run = emptyRun(format);
  if (formatted.empty() || !haveSameFormat(formatted.back(), run)) {
    formatted.push_back(std::move(run));
  }
  formatted.back().text += text;
}

std::string plainText(const FormattedText &formatted) {
  std::string text;
  for (const FormattedRun &run : formatted) {
    text += run.text;
  }
  return text;
}

std::string rtfOfText(const FormattedText &formatted) {
  std::string rtf;
  for (const FormattedRun &run : formatted) {
    const std::string words = controlWords(run);
    if (!words.empty()) {
      rtf += '{' + words + ' ';
    }
    appendEscaped(rtf, run.text);
    if (!words.empty()) {
      rtf += '}';
    }
  }
  return rtf;
}

std::string groupOfText(const FormattedText &formatted) {
  const std::string rtf = rtfOfText(formatted);
  return (formats::isASCII(plainText(formatted)) ? "{" : "{\\uc0 ") + rtf + '}';
}

std::expected<FormattedText, std::string> readPidginRTF(std::string_view pidgin) {
  std::string document = "{\\rtf1\\ansi\\ansicpg65001 ";
  document += withoutBlanksOfEscapes(pidgin);
  document += '}';
  TextReader reader(document);
  FormattedText formatted;
  for (;;) {
    const TextEvent event = reader.next();
    switch (event.kind) {
      case TextEventKind::text:
        appendText(formatted, event.text, reader.characterFormat());
        break;
      case TextEventKind::paragraphEnd:
        appendText(formatted, lineSeparator, reader.characterFormat());
        break;
      case TextEventKind::documentEnd:
        return formatted;
      case TextEventKind::failure:
        return std::unexpected("a formatted citation is no well-formed RTF: " + reader.error());
      case TextEventKind::storyBegin:
      case TextEventKind::storyEnd:
        break;
    }
  }
}

}  // namespace mellel::rtf
