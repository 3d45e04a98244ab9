#include "Bibliography.h"

#include "PlainText.h"
#include "TextReader.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace mellel::rtf {

namespace {

bool isEmpty(const BibliographyParagraph &entry) { return isBlankText(plainText(entry.text)); }

std::string controlWord(std::string_view word, std::int32_t parameter) {
  std::string text = "\\";
  text += word;
  return text + std::to_string(parameter);
}

std::string paragraphWords(const BibliographyParagraph &entry) {
  const ParagraphFormat &format = entry.format;
  std::string words = controlWord("li", format.leftIndent) + controlWord("lin", format.leftIndent) +
                      controlWord("fi", format.firstLineIndent) +
                      // None is a distance too: the place's own must not stay.
                      controlWord("sb", format.spaceBefore) + controlWord("sa", format.spaceAfter);
  // Of lines most styles say nothing: they stay as far apart as those of the document.
  if (format.lineSpacing != 0) {
    words += controlWord("sl", format.lineSpacing) +
             controlWord("slmult", format.lineSpacingIsMultiple ? 1 : 0);
  }
  for (const std::int32_t position : entry.tabStops) {
    words += controlWord("tx", position);
  }
  return words;
}

std::string paragraphs(const BibliographyParagraphs &bibliography, const std::string &formatBefore,
                       const std::string &formatAfter) {
  std::string rtf;
  for (const BibliographyParagraph &entry : bibliography) {
    rtf += '{' + formatBefore + paragraphWords(entry) + formatAfter + "\\uc0 " +
           rtfOfText(entry.text) + "\\par}\n";
  }
  return rtf;
}

}  // namespace

std::expected<BibliographyParagraphs, std::string> readBibliography(std::string_view rtf) {
  if (rtf.empty()) {
    return BibliographyParagraphs{};
  }
  TextReader reader(rtf);
  BibliographyParagraphs bibliography;
  BibliographyParagraph entry;
  const auto endEntry = [&] {
    entry.format = reader.paragraphFormat();
    entry.tabStops.assign(reader.tabStops().begin(), reader.tabStops().end());
    bibliography.push_back(std::exchange(entry, {}));
  };
  for (TextEvent event = reader.next(); event.kind != TextEventKind::documentEnd;
       event = reader.next()) {
    if (event.kind == TextEventKind::failure) {
      return std::unexpected(reader.error());
    }
    if (event.kind == TextEventKind::text) {
      appendText(entry.text, event.text, reader.characterFormat().looks);
      // The format is that at the paragraph's end; without an end, that of its last text.
      entry.format = reader.paragraphFormat();
      entry.tabStops.assign(reader.tabStops().begin(), reader.tabStops().end());
    } else if (event.kind == TextEventKind::paragraphEnd) {
      endEntry();
    }
  }
  bibliography.push_back(std::move(entry));
  const auto first = std::find_if_not(bibliography.begin(), bibliography.end(), isEmpty);
  const auto last = std::find_if_not(bibliography.rbegin(), bibliography.rend(), isEmpty);
  if (first == bibliography.end()) {
    return BibliographyParagraphs{};
  }
  return BibliographyParagraphs(std::make_move_iterator(first),
                                std::make_move_iterator(last.base()));
}

std::string bibliographyInPlace(const BibliographyParagraphs &bibliography) {
  // What the place itself is emphasised with is not meant for all entries.
  return paragraphs(bibliography, "", "\\b0\\i0\\scaps0\\ulnone\\nosupersub");
}

std::string bibliographyInBodyFormat(const BibliographyParagraphs &bibliography,
                                     const BodyFormat &body) {
  std::string before = "\\pard\\plain";
  if (body.style >= 0) {
    before += controlWord("s", body.style);
  }
  // Justified lines would tear short entries apart.
  before += "\\ql";
  std::string after;
  if (body.font >= 0) {
    after += controlWord("f", body.font);
  }
  if (body.size > 0) {
    after += controlWord("fs", body.size);
  }
  return paragraphs(bibliography, before, after);
}

}  // namespace mellel::rtf
