#include "TextReader.h"

#include <Formats/Unicode.h>

#include <algorithm>
#include <utility>

namespace mellel::rtf {

namespace {

constexpr std::size_t greatestDepth = 10'000;
constexpr std::size_t greatestNumberOfTabStops = 64;

bool isPrintableASCII(char byte) { return byte >= 0x20 && byte <= 0x7E; }

bool isHighSurrogate(char32_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
bool isLowSurrogate(char32_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

bool isFontTableWord(Keyword keyword) {
  return keyword == Keyword::font || keyword == Keyword::fontCharacterSet ||
         keyword == Keyword::fontCodePage;
}

bool isHeaderWord(Keyword keyword) {
  return keyword == Keyword::codePageOfHeader || keyword == Keyword::ansiCodePage ||
         keyword == Keyword::defaultFont;
}

// A control word without a blank of its own would take letters, digits or a blank for its own, \'
// two digits. Where \bin has data, these end it.
std::string_view separatorBehind(const Token &token) {
  switch (token.kind) {
    case TokenKind::controlWord:
      return token.isDelimited ? "" : " ";
    case TokenKind::binary:
      return token.isDelimited || token.parameter > 0 ? "" : " ";
    case TokenKind::controlSymbol:
      return token.byte == '\'' ? "{}" : "";
    default:
      return {};
  }
}

// What may follow a document's last brace: some programs fill the file up.
bool isPadding(char byte) {
  return byte == ' ' || byte == '\t' || byte == '\r' || byte == '\n' || byte == '\0' ||
         byte == '\x1A';
}

}  // namespace

TextReader::TextReader(std::string_view rtf) : rtf_(rtf), lexer_(rtf) {
  tabStops_.reserve(greatestNumberOfTabStops);
}

TextEvent TextReader::next() {
  TextEvent event;
  if (!error_.empty()) {
    fail(event, error_);
    return event;
  }
  if (!hasBegun_ && checkBeginning(event)) {
    return event;
  }
  for (;;) {
    if (restBegin_ < restEnd_) {
      if (takePieceOfText(event)) {
        return event;
      }
      continue;
    }
    if (groups_.size() == 2 && mainTextWasSeen_) {
      mainTextWasSeen_ = false;
      // A broken document may hide all of its rest: nothing put there would be read.
      if (groups_.back().visibility == Visibility::visible) {
        endOfMainText_ = restEnd_;
      }
    }
    const Token token = lexer_.next();
    event.begin = token.begin;
    event.end = token.end;
    event.separator = separator_;
    separator_ = separatorBehind(token);
    // Whatever comes next comes after this token.
    restBegin_ = restEnd_ = token.end;
    if (take(token, event)) {
      return event;
    }
  }
}

bool TextReader::checkBeginning(TextEvent &event) {
  hasBegun_ = true;
  Token token = lexer_.next();
  while (token.kind == TokenKind::sourceBreak) {
    token = lexer_.next();
  }
  const Token word = lexer_.next();
  if (token.kind != TokenKind::groupBegin || word.kind != TokenKind::controlWord ||
      word.word != "rtf") {
    return fail(event, "it is not an RTF document");
  }
  groups_.push_back(groups_.back());
  restBegin_ = restEnd_ = endOfMainText_ = word.end;
  separator_ = separatorBehind(word);
  return false;
}

// Called where the outermost group has been closed.
bool TextReader::checkEnd(TextEvent &event) {
  const auto rest = rtf_.substr(event.end);
  const auto wrong = std::find_if_not(rest.begin(), rest.end(), isPadding);
  if (wrong != rest.end()) {
    return fail(event,
                "it goes on after its closing brace, at byte " +
                    std::to_string(event.end + static_cast<std::size_t>(wrong - rest.begin())));
  }
  event.kind = TextEventKind::documentEnd;
  lexer_ = Lexer(rtf_, rtf_.size());
  return true;
}

bool TextReader::fail(TextEvent &event, std::string line) {
  error_ = std::move(line);
  event = TextEvent{};
  event.kind = TextEventKind::failure;
  return true;
}

bool TextReader::isVisible() const {
  const Group &group = groups_.back();
  return group.visibility == Visibility::visible && !group.formatting.characters.isDeleted;
}

bool TextReader::take(const Token &token, TextEvent &event) {
  switch (token.kind) {
    case TokenKind::groupBegin:
      return takeGroupBegin(event);
    case TokenKind::groupEnd:
      return takeGroupEnd(token, event);
    case TokenKind::controlWord:
      return takeControlWord(token, event);
    case TokenKind::controlSymbol:
      return takeControlSymbol(token, event);
    case TokenKind::hexByte:
      return takeByte(token.byte, event);
    case TokenKind::text:
      restBegin_ = token.begin;
      return false;
    case TokenKind::binary:
      forgetIncompleteCharacter();
      return consumesFallback() && giveContinuation(event);
    case TokenKind::sourceBreak:
      return false;
    case TokenKind::unfinished:
    case TokenKind::end:
      break;
  }
  if (groups_.size() == 1) {
    event.kind = TextEventKind::documentEnd;
    return true;
  }
  const std::size_t open = groups_.size() - 1;
  return fail(event, "it is cut short: " + std::to_string(open) +
                         (open == 1 ? " group is" : " groups are") + " still open at its end");
}

bool TextReader::takeGroupBegin(TextEvent &event) {
  forgetIncompleteCharacter();
  fallbackLeft_ = 0;
  if (groups_.size() > greatestDepth) {
    return fail(event, "its groups are nested more than " + std::to_string(greatestDepth) +
                           " deep, at byte " + std::to_string(event.begin));
  }
  groups_.push_back(groups_.back());
  groups_.back().beginsStory = false;
  return false;
}

bool TextReader::takeGroupEnd(const Token &token, TextEvent &event) {
  forgetIncompleteCharacter();
  fallbackLeft_ = 0;
  const bool endsStory = groups_.back().beginsStory;
  groups_.pop_back();
  if (groups_.size() == 1) {
    event.end = token.end;
    return checkEnd(event);
  }
  if (endsStory) {
    --storyDepth_;
    event.kind = TextEventKind::storyEnd;
  }
  return endsStory;
}

bool TextReader::takeControlSymbol(const Token &token, TextEvent &event) {
  switch (token.byte) {
    case '\\':
    case '{':
    case '}':
      return takeCharacter(token.byte, event);
    case '~':
      return takeCharacter(0x00A0, event);
    case '_':
      return takeCharacter(0x2011, event);
    case '-':
      return takeCharacter(0x00AD, event);
    case '\t':
      return takeCharacter('\t', event);
    case '\n':
    case '\r':
      return giveParagraphEnd('\n', event);
    case '*':
      if (groups_.back().visibility == Visibility::visible) {
        groups_.back().visibility = Visibility::ignorable;
      }
      return false;
    default:
      forgetIncompleteCharacter();
      return false;
  }
}

bool TextReader::takeControlWord(const Token &token, TextEvent &event) {
  const KeywordMeaning meaning = meaningOfControlWord(token.word);
  switch (meaning.keyword) {
    case Keyword::character:
      return takeCharacter(meaning.value, event);
    case Keyword::unicodeCharacter:
      return takeUnicodeCharacter(token, event);
    case Keyword::paragraphEnd:
      return giveParagraphEnd(meaning.value, event);
    default:
      break;
  }
  // A word that is no character cannot stand in for one: the fallback is shorter than told.
  fallbackLeft_ = 0;
  sequence_.clear();
  // The two surrogates of a character may each have their own \uc.
  if (meaning.keyword != Keyword::unicodeFallbackCount) {
    highSurrogate_ = 0;
  }
  Group &group = groups_.back();
  if (group.isFontTable && isFontTableWord(meaning.keyword)) {
    fonts_.takeFontTableWord(meaning.keyword, token);
    return false;
  }
  if (isHeaderWord(meaning.keyword)) {
    fonts_.takeHeaderWord(meaning, token);
    return false;
  }
  switch (meaning.keyword) {
    case Keyword::unknown:
      return false;
    case Keyword::unicodeFallbackCount:
      group.unicodeFallbackCount = std::max(token.parameter, 0);
      return false;
    case Keyword::tabStop:
      if (tabStops_.size() < greatestNumberOfTabStops) {
        tabStops_.push_back(token.parameter);
      }
      return false;
    case Keyword::resetParagraph:
      tabStops_.clear();
      [[fallthrough]];
    default:
      applyFormatting(meaning.keyword, token, group.formatting);
      return takeDestination(meaning.keyword, event);
  }
}

bool TextReader::takeDestination(Keyword keyword, TextEvent &event) {
  Group &group = groups_.back();
  switch (keyword) {
    case Keyword::fontTable:
      group.isFontTable = true;
      group.visibility = Visibility::hidden;
      return false;
    case Keyword::embeddedObject:
      noteMainText();
      lastParagraphIsOpen_ = lastParagraphIsOpen_ || storyDepth_ == 0;
      group.visibility = Visibility::hidden;
      return false;
    case Keyword::hiddenDestination:
      group.visibility = Visibility::hidden;
      return false;
    case Keyword::listText:
      if (group.visibility == Visibility::visible || group.visibility == Visibility::ignorable) {
        group.visibility = Visibility::listText;
        listTexts_.begin();
      }
      return false;
    case Keyword::unicodePair:
      if (group.visibility == Visibility::visible) {
        group.visibility = Visibility::unicodePair;
      }
      return false;
    case Keyword::unicodeText:
      if (group.visibility == Visibility::unicodePair) {
        group.visibility = Visibility::visible;
      }
      return false;
    case Keyword::storyDestination:
      break;
    default:
      return false;
  }
  const bool holdsText =
      group.visibility == Visibility::visible || group.visibility == Visibility::ignorable;
  if (!holdsText || group.beginsStory || groups_.size() == 2) {
    return false;
  }
  group.visibility = Visibility::visible;
  group.beginsStory = true;
  ++storyDepth_;
  event.kind = TextEventKind::storyBegin;
  return true;
}

void TextReader::noteMainText() {
  if (storyDepth_ == 0) {
    mainTextWasSeen_ = true;
  }
}

bool TextReader::giveParagraphEnd(char32_t character, TextEvent &event) {
  fallbackLeft_ = 0;
  forgetIncompleteCharacter();
  if (groups_.back().visibility != Visibility::visible) {
    return false;
  }
  noteMainText();
  if (storyDepth_ == 0) {
    lastParagraphIsOpen_ = false;
  }
  event.kind = TextEventKind::paragraphEnd;
  event.character = character;
  return true;
}

void TextReader::forgetIncompleteCharacter() {
  sequence_.clear();
  highSurrogate_ = 0;
}

// Whether this character is only the fallback of the one before.
bool TextReader::consumesFallback() {
  if (fallbackLeft_ == 0) {
    return false;
  }
  --fallbackLeft_;
  return true;
}

bool TextReader::takeCharacter(char32_t character, TextEvent &event) {
  sequence_.clear();
  return consumesFallback() ? giveContinuation(event) : giveCharacter(character, event);
}

bool TextReader::giveContinuation(TextEvent &event) {
  event.isContinuation = isVisible();
  if (event.isContinuation) {
    // What is put behind the main text must not part a character from its fallback.
    noteMainText();
  }
  return givePart(event);
}

// Bytes of a character that is not given here.
bool TextReader::givePart(TextEvent &event) {
  event.kind = TextEventKind::text;
  return isVisible();
}

bool TextReader::giveCharacter(char32_t character, TextEvent &event) {
  highSurrogate_ = 0;
  if (!isVisible()) {
    if (groups_.back().visibility == Visibility::listText && character < 0x80) {
      listTexts_.take(std::string(1, static_cast<char>(character)));
    }
    return false;
  }
  text_.clear();
  formats::appendUTF8(text_, character);
  noteMainText();
  lastParagraphIsOpen_ = lastParagraphIsOpen_ || storyDepth_ == 0;
  event.kind = TextEventKind::text;
  event.character = character;
  event.text = text_;
  return true;
}

bool TextReader::takeUnicodeCharacter(const Token &token, TextEvent &event) {
  sequence_.clear();
  // Above 0x7FFF the number is written as a negative 16-bit one. Some programs write whole
  // code points.
  const auto character =
      static_cast<char32_t>(token.parameter < 0 ? token.parameter + 0x10000 : token.parameter);
  fallbackLeft_ = groups_.back().unicodeFallbackCount;
  if (character == 0) {
    return givePart(event);
  }
  if (isHighSurrogate(character)) {
    highSurrogate_ = character;
    return givePart(event);
  }
  if (highSurrogate_ != 0 && isLowSurrogate(character)) {
    return giveCharacter(0x10000 + ((highSurrogate_ - 0xD800) << 10) + (character - 0xDC00), event);
  }
  return giveCharacter(character, event);
}

bool TextReader::takeByte(std::uint8_t byte, TextEvent &event) {
  if (consumesFallback()) {
    return giveContinuation(event);
  }
  if (!isVisible()) {
    return false;
  }
  if (sequence_.empty() && byte < 0x80) {
    const bool isText = byte >= 0x20 && byte != 0x7F;
    return (isText || byte == '\t') && giveCharacter(byte, event);
  }
  const CodePage &page = fonts_.codePageOfFont(characterFormat().font);
  sequence_ += static_cast<char>(byte);
  if (sequence_.size() < page.sequenceLength(static_cast<std::uint8_t>(sequence_.front()))) {
    return givePart(event);
  }
  const char32_t character = page.decode(sequence_);
  sequence_.clear();
  return giveCharacter(character, event);
}

bool TextReader::takePieceOfText(TextEvent &event) {
  const std::string_view rest = rtf_.substr(restBegin_, restEnd_ - restBegin_);
  // Only the first piece of a token follows on the token before.
  if (event.begin != restBegin_) {
    event.separator = {};
  }
  event.begin = restBegin_;
  const auto takeBytes = [&](std::size_t count) {
    restBegin_ += count;
    event.end = restBegin_;
  };
  if (fallbackLeft_ > 0) {
    const auto count = std::min(rest.size(), static_cast<std::size_t>(fallbackLeft_));
    fallbackLeft_ -= static_cast<std::int32_t>(count);
    takeBytes(count);
    return giveContinuation(event);
  }
  if (!isVisible()) {
    forgetIncompleteCharacter();
    if (groups_.back().visibility == Visibility::listText) {
      listTexts_.take(rest);
    }
    takeBytes(rest.size());
    return false;
  }
  highSurrogate_ = 0;
  if (!sequence_.empty() || !isPrintableASCII(rest.front())) {
    takeBytes(1);
    return takeByte(static_cast<std::uint8_t>(rest.front()), event);
  }
  const auto end = std::find_if_not(rest.begin(), rest.end(), isPrintableASCII);
  const auto length = static_cast<std::size_t>(end - rest.begin());
  takeBytes(length);
  noteMainText();
  lastParagraphIsOpen_ = lastParagraphIsOpen_ || storyDepth_ == 0;
  event.kind = TextEventKind::text;
  event.text = rest.substr(0, length);
  event.character = length == 1 ? static_cast<char32_t>(rest.front()) : 0;
  return true;
}

}  // namespace mellel::rtf
