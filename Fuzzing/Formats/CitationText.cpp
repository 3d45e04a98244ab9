// The syntax of a citation: read like the slow reference reads it, and every text that comes out is
// a piece of the text that went in.

#include <Formats/CitationText.h>
#include <Formats/VerifiedMarker.h>
#include <Fuzzing/Support/FuzzedData.h>
#include <Fuzzing/Support/Target.h>
#include <Tests/Support/ReferenceCitationText.h>
#include <Tests/Support/ReferenceVerifiedMarker.h>

#include <functional>

namespace fuzzing {

namespace {

bool isPieceOf(std::u16string_view text, std::u16string_view piece) {
  const std::less_equal<const char16_t *> notAfter;
  return notAfter(text.data(), piece.data()) &&
         notAfter(piece.data() + piece.size(), text.data() + text.size());
}

void compare(std::u16string_view text, const std::optional<std::u16string_view> &piece,
             const std::optional<std::u16string> &expected) {
  require(piece == expected);
  require(!piece || isPieceOf(text, *piece));
}

}  // namespace

void run(std::string_view bytes) {
  const std::u16string text = codeUnits(bytes);
  const formats::CitationText citation = formats::parseCitationText(text);
  const reference::CitationText expected = reference::parseCitationText(text);
  compare(text, citation.pageRange, expected.pageRange);
  compare(text, citation.tag, expected.tag);
  compare(text, citation.prependText, expected.prependText);
  compare(text, citation.appendText, expected.appendText);
  compare(text, citation.searchText, expected.searchText);
  require(citation.excludeFromBody == expected.excludeFromBody);
  require(citation.excludeFromBibliography == expected.excludeFromBibliography);
  require(citation.useYearOnly == expected.useYearOnly);
  require(citation.suppressSuperscript == expected.suppressSuperscript);
  require(citation.stripEnclosure == expected.stripEnclosure);

  require(formats::withoutVerifiedMarkers(text) == reference::withoutVerifiedMarkers(text));
  require(formats::withoutVerifiedMarkers(bytes) ==
          reference::withoutVerifiedMarkers(std::string(bytes)));
}

}  // namespace fuzzing
