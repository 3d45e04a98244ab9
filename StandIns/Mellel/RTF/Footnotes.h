// Footnotes in place of citations. A style for footnotes makes sentences of its citations, "John
// Smith, On Heat, 45.", which only read well at the foot of the page.
#pragma once

#include "CitationFinder.h"
#include "RichText.h"

#include <cstddef>
#include <optional>
#include <span>
#include <string>

namespace mellel::rtf {

// By text of each citation; nothing where one has none.
using CitationTexts = std::span<const std::optional<RichText>>;

// Whether the style made sentences, as one can tell by most of the texts.
bool areSentences(CitationTexts texts);

// How many citations of the main text have a text of which a footnote can be made.
std::size_t countForFootnotes(const DocumentText &document, CitationTexts texts);

// Whether this one is one of them.
bool isForFootnote(const Citation &citation, const std::optional<RichText> &text);

// The mark with its note, for a document whose body looks so. It takes a character's place.
std::string footnote(const RichText &text, const BodyFormat &body);

}  // namespace mellel::rtf
