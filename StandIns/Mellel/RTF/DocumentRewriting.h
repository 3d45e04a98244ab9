// Puts formatted citations and the bibliography into a copy of a document.
#pragma once

#include "Bibliography.h"
#include "CitationFinder.h"
#include "RichText.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace mellel::rtf {

// The document with each citation's characters replaced by its text, where there is one, and
// with the bibliography at its place or at the end of the main text. Every other byte is kept,
// formatting inside a citation too, so that what follows looks as before. An empty
// bibliography is no bibliography: the place stays.
//
// `texts` belong to the citations of `document`, which was read from `rtf`.
std::string formattedDocument(std::string_view rtf, const DocumentText &document,
                              const std::vector<std::optional<RichText>> &texts,
                              const BibliographyParagraphs &bibliography);

// The document with the citation, braces included, at a place that findEndOfText gave.
std::string documentWithCitation(std::string_view rtf, std::size_t place,
                                 std::string_view citation);

}  // namespace mellel::rtf
