// Finds the citations of a document: text between braces, {Smith 2001#SMI2001@45; Jones 1999}.
//
// A word processor may break a citation up at any place: with formatting, with groups, with
// line breaks in the source, with characters written as bytes or as numbers. So braces are
// looked for in what the document reads as, and each citation remembers the bytes that its
// characters take. Whatever else lies between them (formatting, bookmarks, a footnote's mark)
// belongs to no citation and stays.
//
// A citation stands in one paragraph of one text: it never reaches across the end of a
// paragraph, into a footnote or out of it. A brace without a partner is text like any other,
// as are braces with nothing between them; of several opening braces the last counts.
//
// A paragraph that holds {bibliography} and nothing else is where the bibliography goes.
#pragma once

#include "Edits.h"
#include "Formatting.h"

#include <cstddef>
#include <cstdint>
#include <expected>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace mellel::rtf {

// Bytes of the document that are characters of a citation, and nothing else.
struct CharacterSpan {
  Span span;
  // What must take their place if they go, because the mark directly before them would read on in
  // what follows: nothing, a blank or an empty group. Lives for ever.
  std::string_view separator;
};

// Where a footnote's mark goes that takes a citation's place: a note follows its word without a
// blank, and a stop or comma without a gap.
struct NoteSeam {
  std::optional<CharacterSpan> blankBefore;
  // A byte offset; nothing where the mark stands in the citation's own place.
  std::optional<std::size_t> markBehindPunctuation;
};

struct Citation {
  // What stands between the braces, UTF-8. Characters that only guide the layout are told
  // as what they mean: no-break spaces and line breaks as blanks, no-break hyphens as
  // hyphens, optional hyphens as nothing.
  std::string text;
  // In the order of the document, braces included; never empty.
  std::vector<CharacterSpan> spans = {};
  // What its first character looks like and not all of the others do: where emphasis ended inside
  // of it, it was not meant for all of it.
  CharacterLooks endingLooks = {};
  // In no footnote, header or text box.
  bool isInMainText = true;
  NoteSeam noteSeam = {};
  // The next character is a full stop.
  bool isBeforeStop = false;
};

// The formatting that most of the main text is set in; -1 where the document names none.
struct BodyFormat {
  std::int32_t style = -1;
  std::int32_t font = -1;
  std::int32_t size = -1;  // half points
};

struct BibliographyPlace {
  // The braces and what is between them, then the blanks around them.
  std::vector<CharacterSpan> spans;
  // The paragraph's own end, where it is an ordinary one.
  std::optional<CharacterSpan> paragraphEnd;
};

struct DocumentText {
  std::vector<Citation> citations;
  std::optional<BibliographyPlace> bibliographyPlace;  // the first one
  // Where the bibliography goes otherwise: a byte offset outside of all inner groups.
  std::size_t endOfMainText = 0;
  bool lastParagraphIsOpen = false;
  BodyFormat bodyFormat;
  // What stands in braces in the texts for programs without lists, and is left as it is.
  std::size_t citationsInListTexts = 0;
};

// The error is one line; it speaks of the document as "it".
std::expected<DocumentText, std::string> readDocumentText(std::string_view rtf);

// Where the given text stands first: the byte offset after its last character. Nothing if it
// stands nowhere in a single paragraph, or has no characters. Characters are compared as in
// Citation::text.
std::expected<std::optional<std::size_t>, std::string> findEndOfText(std::string_view rtf,
                                                                     std::string_view text);

}  // namespace mellel::rtf
