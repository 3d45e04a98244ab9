// Puts formatted citations and the bibliography into a copy of a document.
#pragma once

#include "Bibliography.h"
#include "CitationFinder.h"
#include "Footnotes.h"
#include "RichText.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace mellel::rtf {

enum class PlaceOfCitations { inText, inFootnotes };

// The document with each citation's characters replaced by its text, where there is one, and
// with the bibliography at its place or at the end of the main text. Every other byte is kept,
// formatting inside a citation too, so that what follows looks as before. An empty
// bibliography is no bibliography: the place stays.
//
// With footnotes, the citations of the main text become some; the blank before each goes.
//
// `texts` belong to the citations of `document`, which was read from `rtf`.
std::string formattedDocument(std::string_view rtf, const DocumentText &document,
                              const std::vector<std::optional<RichText>> &texts,
                              const BibliographyParagraphs &bibliography,
                              PlaceOfCitations place = PlaceOfCitations::inText);

// The document with the citation, braces included, at a place that findEndOfText gave.
std::string documentWithCitation(std::string_view rtf, std::size_t place,
                                 std::string_view citation);

}  // namespace mellel::rtf
