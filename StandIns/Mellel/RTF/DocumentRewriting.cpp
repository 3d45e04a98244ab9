#include "DocumentRewriting.h"

#include "Edits.h"
#include "Escape.h"

#include <Formats/Unicode.h>

#include <ranges>
#include <utility>

namespace mellel::rtf {

namespace {

void remove(std::vector<Edit> &edits, const CharacterSpan &characters) {
  edits.push_back({characters.span, std::string(characters.separator)});
}

// The group takes the first place; it ends a control word before it by itself. An empty text
// leaves an empty group, so that what stood apart still stands apart.
void replace(std::vector<Edit> &edits, const std::vector<CharacterSpan> &spans, std::string group) {
  if (spans.empty()) {
    return;
  }
  edits.push_back({spans.front().span, std::move(group)});
  for (const CharacterSpan &characters : spans | std::views::drop(1)) {
    remove(edits, characters);
  }
}

// A sentence ends with one stop: where the document has it, the text needs none.
std::string groupInPlace(const RichText &text, const Citation &citation) {
  if (!citation.isBeforeStop || text.empty() || !text.back().text.ends_with('.')) {
    return groupOfText(text, citation.endingLooks);
  }
  RichText fitting = text;
  fitting.back().text.pop_back();
  return groupOfText(fitting, citation.endingLooks);
}

void replaceByFootnote(std::vector<Edit> &edits, const Citation &citation, std::string note) {
  const NoteSeam &seam = citation.noteSeam;
  if (seam.blankBefore) {
    remove(edits, *seam.blankBefore);
  }
  if (!seam.markBehindPunctuation) {
    replace(edits, citation.spans, std::move(note));
    return;
  }
  for (const CharacterSpan &characters : citation.spans) {
    remove(edits, characters);
  }
  edits.push_back({{*seam.markBehindPunctuation, *seam.markBehindPunctuation}, std::move(note)});
}

void addBibliography(std::vector<Edit> &edits, const DocumentText &document,
                     const BibliographyParagraphs &bibliography) {
  if (bibliography.empty()) {
    return;
  }
  if (document.bibliographyPlace) {
    const BibliographyPlace &place = *document.bibliographyPlace;
    replace(edits, place.spans, '\n' + bibliographyInPlace(bibliography));
    // The last entry has ended the paragraph.
    if (place.paragraphEnd) {
      remove(edits, *place.paragraphEnd);
    }
    return;
  }
  const std::size_t end = document.endOfMainText;
  edits.push_back({{end, end},
                   (document.lastParagraphIsOpen ? "\\par\n" : "\n") +
                       bibliographyInBodyFormat(bibliography, document.bodyFormat)});
}

}  // namespace

std::string formattedDocument(std::string_view rtf, const DocumentText &document,
                              const std::vector<std::optional<RichText>> &texts,
                              const BibliographyParagraphs &bibliography, PlaceOfCitations place) {
  std::vector<Edit> edits;
  for (std::size_t index = 0; index < document.citations.size(); ++index) {
    const Citation &citation = document.citations[index];
    const std::optional<RichText> &text = texts.at(index);
    if (place == PlaceOfCitations::inFootnotes && isForFootnote(citation, text)) {
      replaceByFootnote(edits, citation, footnote(*text, document.bodyFormat));
    } else if (text) {
      replace(edits, citation.spans, groupInPlace(*text, citation));
    }
  }
  addBibliography(edits, document, bibliography);
  return edited(rtf, std::move(edits));
}

std::string documentWithCitation(std::string_view rtf, std::size_t place,
                                 std::string_view citation) {
  std::string text = formats::isASCII(citation) ? "{" : "{\\uc0 ";
  appendEscaped(text, citation);
  text += '}';
  return edited(rtf, {{{place, place}, std::move(text)}});
}

}  // namespace mellel::rtf
