// Brings a bibliography from one document into another.
//
// The host sends the bibliography as a whole RTF document, with a header, fonts and colours of
// its own. Only its paragraphs move: their text, character formatting, indents, spacing
// and tab stops. Font and size are those of the document that they are put into.
#pragma once

#include "CitationFinder.h"
#include "Formatting.h"
#include "RichText.h"

#include <cstdint>
#include <expected>
#include <string>
#include <string_view>
#include <vector>

namespace mellel::rtf {

struct BibliographyParagraph {
  RichText text;
  ParagraphFormat format;
  std::vector<std::int32_t> tabStops;  // twips
};

using BibliographyParagraphs = std::vector<BibliographyParagraph>;

// The paragraphs of the document, without empty ones at its beginning and end. No bytes at all
// are no paragraphs. The error is one line; it speaks of the bibliography as "it".
std::expected<BibliographyParagraphs, std::string> readBibliography(std::string_view rtf);

// Paragraphs, each a group that ends with \par, for a place whose paragraph format, font
// and size they take over.
std::string bibliographyInPlace(const BibliographyParagraphs &bibliography);

// The same with the format of the document's body, whatever is in force where they are put.
std::string bibliographyInBodyFormat(const BibliographyParagraphs &bibliography,
                                     const BodyFormat &body);

}  // namespace mellel::rtf
