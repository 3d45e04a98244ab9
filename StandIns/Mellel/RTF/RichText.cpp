#include "RichText.h"

#include "Escape.h"
#include "Lexer.h"
#include "TextReader.h"

#include <Formats/Unicode.h>

namespace mellel::rtf {

namespace {

constexpr std::string_view lineSeparator = "\xE2\x80\xA8";

std::string controlWords(const CharacterLooks &looks) {
  std::string words;
  const auto add = [&](bool isOn, std::string_view word) {
    if (isOn) {
      words += word;
    }
  };
  add(looks.isUnderlined, "\\ul");
  add(looks.isItalic, "\\i");
  add(looks.isBold, "\\b");
  add(looks.isSmallCapitals, "\\scaps");
  add(looks.isSuperscript, "\\super");
  add(looks.isSubscript, "\\sub");
  return words;
}

std::string endingWords(const CharacterLooks &looks) {
  std::string words;
  words += looks.isUnderlined ? "\\ulnone" : "";
  words += looks.isItalic ? "\\i0" : "";
  words += looks.isBold ? "\\b0" : "";
  words += looks.isSmallCapitals ? "\\scaps0" : "";
  words += looks.isSuperscript || looks.isSubscript ? "\\nosupersub" : "";
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

void appendText(RichText &formatted, std::string_view text, const CharacterLooks &looks) {
  if (text.empty()) {
    return;
  }
  if (formatted.empty() || formatted.back().looks != looks) {
    formatted.push_back({{}, looks});
  }
  formatted.back().text += text;
}

std::string plainText(const RichText &formatted) {
  std::string text;
  for (const TextRun &run : formatted) {
    text += run.text;
  }
  return text;
}

std::string rtfOfText(const RichText &formatted) {
  std::string rtf;
  for (const TextRun &run : formatted) {
    const std::string words = controlWords(run.looks);
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

std::string groupOfText(const RichText &formatted, const CharacterLooks &ended) {
  std::string words = endingWords(ended);
  if (!formats::isASCII(plainText(formatted))) {
    words += "\\uc0";
  }
  return '{' + words + (words.empty() ? "" : " ") + rtfOfText(formatted) + '}';
}

std::expected<RichText, std::string> readPidginRTF(std::string_view pidgin) {
  std::string document = "{\\rtf1\\ansi\\ansicpg65001 ";
  document += withoutBlanksOfEscapes(pidgin);
  document += '}';
  TextReader reader(document);
  RichText formatted;
  for (;;) {
    const TextEvent event = reader.next();
    switch (event.kind) {
      case TextEventKind::text:
        appendText(formatted, event.text, reader.characterFormat().looks);
        break;
      case TextEventKind::paragraphEnd:
        appendText(formatted, lineSeparator, reader.characterFormat().looks);
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
