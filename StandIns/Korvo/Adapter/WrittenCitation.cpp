// The syntax has no escapes, so the same parts may have to be written one way or another: with
// or without the backslash that ends the text after the citation (at the very end it may be
// left out, and must be where a marker would follow it), with or without a blank that keeps
// the first letter from being taken for a flag. The ways are tried in the order of their
// beauty; the first that reads back is taken.
#include "WrittenCitation.h"

#include <Formats/CitationText.h>

namespace korvo::adapter {
namespace {

struct Way {
  bool closesAppendString;
  bool startsWithBlank;
};

std::u16string writtenIn(Way way, const CitationParts &parts, std::u16string_view tag) {
  std::u16string text;
  if (!parts.includeInBody) {
    text += u'!';
  }
  if (!parts.includeInBibliography) {
    text += u'^';
  }
  if (parts.useYearOnly) {
    text += u'%';
  }
  if (parts.suppressSuperscript) {
    text += u'_';
  }
  if (parts.stripEnclosure) {
    text += u'*';
  }
  if (!parts.prependString.empty()) {
    text += u'\\' + parts.prependString + u'\\';
  }
  if (way.startsWithBlank) {
    text += u' ';
  }
  text += parts.searchString;
  if (!parts.appendString.empty()) {
    text += u'\\' + parts.appendString;
    if (way.closesAppendString) {
      text += u'\\';
    }
  }
  if (!tag.empty()) {
    text.append(u"#").append(tag);
  }
  if (!parts.pageRange.empty()) {
    text += u'@' + parts.pageRange;
  }
  return text;
}

bool readsAs(std::u16string_view text, const CitationParts &parts) {
  const formats::CitationText read = formats::parseCitationText(text);
  return read.searchText == parts.searchString && read.pageRange.value_or(u"") == parts.pageRange &&
         read.prependText.value_or(u"") == parts.prependString &&
         read.appendText.value_or(u"") == parts.appendString &&
         read.excludeFromBody != parts.includeInBody &&
         read.excludeFromBibliography != parts.includeInBibliography &&
         read.useYearOnly == parts.useYearOnly &&
         read.suppressSuperscript == parts.suppressSuperscript &&
         read.stripEnclosure == parts.stripEnclosure;
}

}  // namespace

std::u16string writtenCitation(const CitationParts &parts, std::u16string_view tag) {
  constexpr Way ways[] = {{true, false}, {false, false}, {true, true}, {false, true}};
  for (const Way way : ways) {
    std::u16string text = writtenIn(way, parts, tag);
    if (readsAs(text, parts)) {
      return text;
    }
  }
  return writtenIn(ways[0], parts, tag);
}

}  // namespace korvo::adapter
