// A bibliography from any RTF: what was read survives being written into a document, entry by
// entry, with its text, its formatting and its layout.

#include "NormalText.h"

#include <Fuzzing/Support/Target.h>
#include <StandIns/Mellel/RTF/Bibliography.h>

namespace fuzzing {

namespace {

using mellel::rtf::BibliographyParagraphs;

void requireSame(const BibliographyParagraphs &left, const BibliographyParagraphs &right) {
  require(left.size() == right.size());
  for (std::size_t index = 0; index < left.size(); ++index) {
    require(isSameText(left[index].text, right[index].text));
    require(left[index].format.leftIndent == right[index].format.leftIndent);
    require(left[index].format.firstLineIndent == right[index].format.firstLineIndent);
    require(left[index].format.spaceBefore == right[index].format.spaceBefore);
    require(left[index].format.spaceAfter == right[index].format.spaceAfter);
  }
}

}  // namespace

void run(std::string_view bytes) {
  const auto bibliography = mellel::rtf::readBibliography(bytes);
  if (!bibliography) {
    require(!bibliography.error().empty() && bibliography.error().find('\n') == std::string::npos);
    return;
  }
  const std::string inPlace =
      "{\\rtf1\\ansi " + mellel::rtf::bibliographyInPlace(*bibliography) + '}';
  const auto readInPlace = mellel::rtf::readBibliography(inPlace);
  require(readInPlace.has_value());
  requireSame(*readInPlace, *bibliography);

  const mellel::rtf::BodyFormat body{.style = 1, .font = 2, .size = 24};
  const std::string inBody =
      "{\\rtf1\\ansi\\b " + mellel::rtf::bibliographyInBodyFormat(*bibliography, body) + '}';
  const auto readInBody = mellel::rtf::readBibliography(inBody);
  require(readInBody.has_value());
  requireSame(*readInBody, *bibliography);
}

}  // namespace fuzzing
