#include "ReadDocument.h"

#include <StandIns/Mellel/RTF/CitationFinder.h>
#include <StandIns/Mellel/RTF/TextReader.h>

namespace test_support {

using mellel::rtf::CharacterLooks;
using mellel::rtf::Citation;
using mellel::rtf::readDocumentText;
using mellel::rtf::TextEvent;
using mellel::rtf::TextEventKind;
using mellel::rtf::TextReader;

std::string documentWith(std::string_view body) {
  std::string document =
      "{\\rtf1\\ansi\\ansicpg1252\\deff0{\\fonttbl{\\f0\\fnil\\fcharset0 Times;}}\n";
  document += body;
  document += '}';
  return document;
}

std::optional<std::string> textOf(std::string_view rtf) {
  TextReader reader(rtf);
  std::string text;
  for (;;) {
    const TextEvent event = reader.next();
    switch (event.kind) {
      case TextEventKind::text:
        text += event.text;
        break;
      case TextEventKind::paragraphEnd:
        text += "¶";
        break;
      case TextEventKind::storyBegin:
        text += "‹";
        break;
      case TextEventKind::storyEnd:
        text += "›";
        break;
      case TextEventKind::documentEnd:
        return text;
      case TextEventKind::failure:
        return std::nullopt;
    }
  }
}

std::string errorOf(std::string_view rtf) {
  const auto document = readDocumentText(rtf);
  return document ? std::string() : document.error();
}

std::vector<std::string> citationsIn(std::string_view rtf) {
  std::vector<std::string> texts;
  const auto document = readDocumentText(rtf);
  if (document) {
    for (const Citation &citation : document->citations) {
      texts.push_back(citation.text);
    }
  }
  return texts;
}

void PrintTo(const Character &character, std::ostream *stream) {
  *stream << (character.endsParagraph ? "¶" : character.text) << (character.isBold ? " bold" : "")
          << (character.isItalic ? " italic" : "") << " in " << character.story;
}

std::optional<std::vector<Character>> charactersOf(std::string_view rtf) {
  TextReader reader(rtf);
  std::vector<Character> characters;
  std::vector<std::size_t> stories = {0};
  std::size_t lastStory = 0;
  for (;;) {
    const TextEvent event = reader.next();
    const CharacterLooks looks = reader.characterFormat().looks;
    Character character{{}, looks.isBold, looks.isItalic, stories.back(), false};
    switch (event.kind) {
      case TextEventKind::text:
        for (std::size_t begin = 0; begin < event.text.size();) {
          std::size_t end = begin + 1;
          while (end < event.text.size() &&
                 (static_cast<unsigned char>(event.text[end]) & 0xC0U) == 0x80) {
            ++end;
          }
          character.text = event.text.substr(begin, end - begin);
          characters.push_back(character);
          begin = end;
        }
        break;
      case TextEventKind::paragraphEnd:
        character.endsParagraph = true;
        characters.push_back(character);
        break;
      case TextEventKind::storyBegin:
        stories.push_back(++lastStory);
        break;
      case TextEventKind::storyEnd:
        stories.pop_back();
        break;
      case TextEventKind::documentEnd:
        return characters;
      case TextEventKind::failure:
        return std::nullopt;
    }
  }
}

}  // namespace test_support
