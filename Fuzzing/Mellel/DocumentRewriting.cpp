// Editing any document: without a change it comes back byte for byte; with one, every byte outside
// of the citations is still there, and what a reader sees has changed at the citations alone.

#include <Formats/Unicode.h>
#include <Fuzzing/Support/Target.h>
#include <StandIns/Mellel/RTF/DocumentRewriting.h>
#include <Tests/Support/ReadDocument.h>
#include <Tests/Support/ReferenceRewriting.h>

#include <algorithm>

namespace fuzzing {

namespace {

using mellel::rtf::Citation;
using mellel::rtf::DocumentText;
using mellel::rtf::RichText;
using test_support::Character;
using test_support::charactersOf;
using test_support::citationsAmong;
using test_support::withCitationsReplaced;
using Characters = std::vector<Character>;
using Texts = std::vector<std::optional<RichText>>;

// Stands for a formatted citation. A document that has it already proves nothing.
const std::string replacement = "☃";

const mellel::rtf::BibliographyParagraphs bibliography = {
    {.text = {{.text = "A. "}, {.text = "Title é", .looks = {.isItalic = true}}},
     .format = {},
     .tabStops = {}},
    {.text = {{.text = "{B}"}}, .format = {.leftIndent = 360}, .tabStops = {360}}};

std::size_t charactersIn(std::string_view text) {
  return static_cast<std::size_t>(std::ranges::count_if(
      text, [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80; }));
}

// What the citations, and the place of the bibliography, do not cover.
std::vector<std::string_view> untouchedBytes(std::string_view rtf, const DocumentText &document) {
  std::vector<mellel::rtf::Span> touched;
  const auto touch = [&](const mellel::rtf::CharacterSpan &characters) {
    require(characters.span.begin < characters.span.end && characters.span.end <= rtf.size());
    touched.push_back(characters.span);
  };
  for (const Citation &citation : document.citations) {
    require(!citation.spans.empty());
    std::ranges::for_each(citation.spans, touch);
  }
  if (document.bibliographyPlace) {
    std::ranges::for_each(document.bibliographyPlace->spans, touch);
    if (document.bibliographyPlace->paragraphEnd) {
      touch(*document.bibliographyPlace->paragraphEnd);
    }
  }
  std::ranges::sort(touched, {}, &mellel::rtf::Span::begin);
  std::vector<std::string_view> untouched;
  std::size_t position = 0;
  for (const mellel::rtf::Span &span : touched) {
    // Nothing is replaced twice.
    require(span.begin >= position);
    untouched.push_back(rtf.substr(position, span.begin - position));
    position = span.end;
  }
  untouched.push_back(rtf.substr(position));
  return untouched;
}

void requireAllInOrder(std::string_view rewritten, const std::vector<std::string_view> &pieces) {
  require(rewritten.starts_with(pieces.front()));
  require(rewritten.ends_with(pieces.back()));
  std::size_t position = 0;
  for (const std::string_view piece : pieces) {
    position = rewritten.find(piece, position);
    require(position != std::string_view::npos);
    position += piece.size();
  }
}

void replaceCitations(std::string_view rtf, const DocumentText &document,
                      const Characters &before) {
  const std::size_t count = document.citations.size();
  const auto isReplacement = [](const Character &character) {
    return character.text == replacement;
  };
  if (std::ranges::any_of(before, isReplacement)) {
    return;
  }
  const std::string after = mellel::rtf::formattedDocument(
      rtf, document, Texts(count, RichText{{.text = replacement}}), {});
  require(charactersOf(after) == withCitationsReplaced(before, replacement));

  const std::string without =
      mellel::rtf::formattedDocument(rtf, document, Texts(count, RichText{}), {});
  Characters expected = withCitationsReplaced(before, replacement);
  std::erase_if(expected, isReplacement);
  require(charactersOf(without) == expected);
}

void addBibliography(std::string_view rtf, const DocumentText &document, const Characters &before) {
  const Texts texts(document.citations.size(), RichText{{.text = replacement}});
  const std::string after = mellel::rtf::formattedDocument(rtf, document, texts, bibliography);
  const std::vector<std::string_view> untouched = untouchedBytes(rtf, document);
  const auto characters = charactersOf(after);
  require(characters.has_value());
  if (document.bibliographyPlace) {
    requireAllInOrder(after, untouched);
  } else {
    const std::size_t added = charactersIn("A. Title é") + charactersIn("{B}") + 2;
    const std::size_t closed = document.lastParagraphIsOpen ? 1 : 0;
    require(characters->size() ==
            withCitationsReplaced(before, replacement).size() + added + closed);
  }
}

// A citation is inserted behind a text that is there.
void insertCitation(const std::string &rtf, const Characters &before) {
  std::string needle;
  for (const Character &character : before) {
    if (character.story != 0 || character.endsParagraph || needle.size() > 8) {
      break;
    }
    needle += character.text;
  }
  const auto place = mellel::rtf::findEndOfText(rtf, needle);
  require(place.has_value());
  if (!*place) {
    return;
  }
  require(**place <= rtf.size());
  const std::string after = mellel::rtf::documentWithCitation(rtf, **place, "{é 1}");
  require(after.starts_with(std::string_view(rtf).substr(0, **place)));
  require(after.ends_with(std::string_view(rtf).substr(**place)));
  const auto characters = charactersOf(after);
  require(characters.has_value() && characters->size() == before.size() + charactersIn("{é 1}"));
}

}  // namespace

void run(std::string_view bytes) {
  const std::string rtf(bytes);
  const auto before = charactersOf(rtf);
  const auto document = mellel::rtf::readDocumentText(bytes);
  require(before.has_value() == document.has_value());
  if (!document) {
    require(!document.error().empty() && document.error().find('\n') == std::string::npos);
    return;
  }
  const std::size_t count = document->citations.size();
  require(mellel::rtf::formattedDocument(rtf, *document, Texts(count), {}) == rtf);
  for (const Citation &citation : document->citations) {
    require(formats::encodeUTF8(formats::decodeUTF8(citation.text)) == citation.text);
  }
  // The reference knows nothing of the place of a bibliography: to it that is a citation too.
  if (!document->bibliographyPlace) {
    require(count == citationsAmong(*before).size());
    replaceCitations(rtf, *document, *before);
  }
  addBibliography(rtf, *document, *before);
  insertCitation(rtf, *before);
}

}  // namespace fuzzing
