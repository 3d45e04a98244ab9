// The markers are cut off one after the other, each from what its predecessors left:
//
//   1. Page range: all after the first "@".
//   2. Tag: all after the first "#" of the rest.
//   3. Flags: "!", "^", "%", "_", "*" at the very start, in this order, each at most once.
//   4. Prepend text: between a leading backslash and the next one.
//   5. Append text: after the first remaining backslash.
//
// A marker that has nothing behind it is no marker. Because step 1 looks for the first
// "@" of the whole text, a "#" behind it belongs to the page range; because the flags are
// tested in a fixed order, "^!Smith" sets one flag and searches for "!Smith".

#include "CitationText.h"

#include "BlockScan.h"

namespace formats {

namespace {

constexpr auto none = std::u16string_view::npos;

// Cuts off all from the first marker on and returns what follows it; nothing if
// there is no marker or nothing follows it.
std::optional<std::u16string_view> cutAtMarker(std::u16string_view &text, char16_t marker) {
  const std::size_t position =
      findFirst(text, 0, [marker](char16_t unit) { return unit == marker; });
  if (position + 1 >= text.size()) {
    return std::nullopt;
  }
  const std::u16string_view following = text.substr(position + 1);
  text = text.substr(0, position);
  return following;
}

bool cutFlag(std::u16string_view &text, char16_t flag) {
  const bool isSet = text.starts_with(flag);
  if (isSet) {
    text.remove_prefix(1);
  }
  return isSet;
}

// The pair counts only if there is text in it and at least two more characters behind it.
std::optional<std::u16string_view> cutPrependText(std::u16string_view &text) {
  if (!text.starts_with(u'\\')) {
    return std::nullopt;
  }
  const std::size_t closing = text.find(u'\\', 1);
  if (closing == none || closing == 1 || text.size() - closing - 1 < 2) {
    return std::nullopt;
  }
  const std::u16string_view prependText = text.substr(1, closing - 1);
  text = text.substr(closing + 1);
  return prependText;
}

// A closing backslash may be missing. One right behind the opening one closes nothing: it
// belongs to the append text, as does all that follows. What stands behind a closing
// backslash is dropped.
std::optional<std::u16string_view> cutAppendText(std::u16string_view &text) {
  const std::optional<std::u16string_view> following = cutAtMarker(text, u'\\');
  if (!following || following->starts_with(u'\\')) {
    return following;
  }
  return following->substr(0, following->find(u'\\'));
}

}  // namespace

CitationText parseCitationText(std::u16string_view text) {
  CitationText result;
  result.pageRange = cutAtMarker(text, u'@');
  if (const auto tag = cutAtMarker(text, u'#')) {
    result.tag = trimmed(*tag);
  }
  result.excludeFromBody = cutFlag(text, u'!');
  result.excludeFromBibliography = cutFlag(text, u'^');
  result.useYearOnly = cutFlag(text, u'%');
  result.suppressSuperscript = cutFlag(text, u'_');
  result.stripEnclosure = cutFlag(text, u'*');
  result.prependText = cutPrependText(text);
  result.appendText = cutAppendText(text);
  result.searchText = trimmed(text);
  return result;
}

bool isWhitespace(char16_t unit) {
  switch (unit) {
    case u'\t':
    case u' ':
    case 0x00A0:
    case 0x1680:
    case 0x202F:
    case 0x205F:
    case 0x3000:
      return true;
    default:
      return unit >= 0x2000 && unit <= 0x200A;
  }
}

std::u16string_view trimmed(std::u16string_view text) {
  while (!text.empty() && isWhitespace(text.front())) {
    text.remove_prefix(1);
  }
  while (!text.empty() && isWhitespace(text.back())) {
    text.remove_suffix(1);
  }
  return text;
}

}  // namespace formats
