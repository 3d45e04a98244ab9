// Reads the text of an RTF document, and where each piece of it stands in the bytes.
//
// What the reader gives is what a person who opens the document reads: characters, ends of
// paragraphs, and the texts of their own inside the text (footnotes, headers, text
// boxes), which begin and end like brackets. Everything that only looks like text is left
// out: header tables, pictures, field instructions, unknown destinations marked \*, fallbacks
// for readers without Unicode, what a tracked change has deleted.
//
// Linear time. Memory grows with the depth of nested groups only, which is limited; no
// recursion. Bytes that are no well-formed RTF end the reading with one line that says why.
#pragma once

#include "FontTable.h"
#include "Formatting.h"
#include "HiddenCitations.h"
#include "Keywords.h"
#include "Lexer.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace mellel::rtf {

enum class TextEventKind : std::uint8_t {
  text,
  // A table cell, a section or a page ends a paragraph too.
  paragraphEnd,
  storyBegin,
  storyEnd,
  documentEnd,
  failure  // see TextReader::error()
};

struct TextEvent {
  TextEventKind kind = TextEventKind::documentEnd;
  // More bytes of the character before, the fallback of \u: the text is empty, but who removes
  // that character must remove these bytes too. (The first of two bytes of a character, or
  // the first surrogate of two, comes as an event with an empty text as well.)
  bool isContinuation = false;
  // What must take the place of the bytes if they go, because the mark directly before them would
  // read on in what follows: nothing, a blank or an empty group.
  std::string_view separator;
  // The character, where the text is a single one: braces always come singly. Of a paragraph
  // end, '\n' for an ordinary one, 0 for the end of a table cell, a row, a page or a section.
  char32_t character = 0;
  // UTF-8, until the next event. Faithful: no-break space is U+00A0, \line is U+2028.
  std::string_view text;
  // The bytes in the document.
  std::size_t begin = 0;
  std::size_t end = 0;
};

class TextReader {
 public:
  // Borrows the document.
  explicit TextReader(std::string_view rtf);

  TextEvent next();

  // One line; it speaks of the document as "it".
  const std::string &error() const { return error_; }

  // The formatting in force at the last event.
  const CharacterFormat &characterFormat() const { return groups_.back().formatting.characters; }
  const ParagraphFormat &paragraphFormat() const { return groups_.back().formatting.paragraph; }
  std::span<const std::int32_t> tabStops() const { return tabStops_; }
  bool isInMainText() const { return storyDepth_ == 0; }

  // After documentEnd: the first place outside all inner groups that follows the main text,
  // and whether the last paragraph lacks its end.
  std::size_t endOfMainText() const { return endOfMainText_; }
  bool lastParagraphIsOpen() const { return lastParagraphIsOpen_; }
  // Citations, as far as one can tell, in what a program without lists would show in front of a
  // list's items. Some programs put the text of the item itself there.
  std::size_t citationsInListTexts() const { return listTexts_.citations(); }

 private:
  enum class Visibility : std::uint8_t {
    visible,
    ignorable,    // behind \*: hidden but for the texts of their own in it
    unicodePair,  // in \upr: hidden but for \ud
    listText,     // hidden, but looked at
    hidden
  };

  struct Group {
    Visibility visibility = Visibility::visible;
    bool isFontTable = false;
    bool beginsStory = false;
    std::int32_t unicodeFallbackCount = 1;
    Formatting formatting;
  };

  // Each of these takes a piece of the document and says whether it made an event of it.
  bool take(const Token &token, TextEvent &event);
  bool takeGroupBegin(TextEvent &event);
  bool takeGroupEnd(const Token &token, TextEvent &event);
  bool takeControlSymbol(const Token &token, TextEvent &event);
  bool takeControlWord(const Token &token, TextEvent &event);
  bool takeDestination(Keyword keyword, TextEvent &event);
  bool takeUnicodeCharacter(const Token &token, TextEvent &event);
  bool takeByte(std::uint8_t byte, TextEvent &event);
  bool takeCharacter(char32_t character, TextEvent &event);
  bool takePieceOfText(TextEvent &event);

  bool giveCharacter(char32_t character, TextEvent &event);
  bool giveContinuation(TextEvent &event);
  bool givePart(TextEvent &event);
  bool giveParagraphEnd(char32_t character, TextEvent &event);
  bool fail(TextEvent &event, std::string line);

  bool isVisible() const;
  bool consumesFallback();
  void forgetIncompleteCharacter();
  void noteMainText();
  bool checkBeginning(TextEvent &event);
  bool checkEnd(TextEvent &event);

  std::string_view rtf_;
  Lexer lexer_;
  FontTable fonts_;
  // The innermost open group last. The first stands for what is outside of all groups.
  std::vector<Group> groups_ = std::vector<Group>(1);
  bool hasBegun_ = false;
  std::string error_;

  // What is left of a text token.
  std::size_t restBegin_ = 0;
  std::size_t restEnd_ = 0;
  std::string_view separator_;  // behind the last token

  // Characters that take several tokens.
  std::int32_t fallbackLeft_ = 0;
  char32_t highSurrogate_ = 0;
  std::string sequence_;  // the first bytes of a character of several
  std::string text_;      // backs the last event's text

  std::vector<std::int32_t> tabStops_;
  std::size_t storyDepth_ = 0;
  std::size_t endOfMainText_ = 0;
  bool mainTextWasSeen_ = false;
  bool lastParagraphIsOpen_ = false;
  HiddenCitations listTexts_;
};

}  // namespace mellel::rtf
