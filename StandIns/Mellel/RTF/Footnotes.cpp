#include "Footnotes.h"

#include "PlainText.h"

#include <algorithm>
#include <string_view>

namespace mellel::rtf {

namespace {

// In half points: what a document without a size of its own is set in, how much smaller notes are,
// and what stays readable.
constexpr std::int32_t defaultSize = 24;
constexpr std::int32_t smallerBy = 4;
constexpr std::int32_t smallestSize = 16;

bool hasText(const std::optional<RichText> &text) { return text && !isBlankText(plainText(*text)); }

// Closing quotation marks may follow the stop.
bool isSentence(const RichText &text) {
  std::string plain;
  appendPlainText(plain, plainText(text));
  std::string_view rest = plain;
  for (bool wasCut = true; wasCut;) {
    wasCut = false;
    for (const std::string_view mark :
         {" ", "\"", "'", "\xE2\x80\x9D", "\xE2\x80\x99", "\xC2\xBB"}) {
      if (rest.ends_with(mark)) {
        rest.remove_suffix(mark.size());
        wasCut = true;
      }
    }
  }
  return rest.ends_with('.') || rest.ends_with('!') || rest.ends_with('?');
}

}  // namespace

bool areSentences(CitationTexts texts) {
  std::size_t all = 0;
  std::size_t sentences = 0;
  for (const std::optional<RichText> &text : texts) {
    if (hasText(text)) {
      all += 1;
      sentences += isSentence(*text) ? 1 : 0;
    }
  }
  return all > 0 && 2 * sentences > all;
}

bool isForFootnote(const Citation &citation, const std::optional<RichText> &text) {
  return citation.isInMainText && hasText(text);
}

std::size_t countForFootnotes(const DocumentText &document, CitationTexts texts) {
  std::size_t count = 0;
  for (std::size_t index = 0; index < document.citations.size(); ++index) {
    count += isForFootnote(document.citations[index], texts[index]) ? 1 : 0;
  }
  return count;
}

std::string footnote(const RichText &text, const BodyFormat &body) {
  const std::int32_t bodySize = body.size > 0 ? body.size : defaultSize;
  std::string rtf = "{\\super\\chftn}{\\footnote\\pard\\plain";
  if (body.font >= 0) {
    rtf += "\\f" + std::to_string(body.font);
  }
  rtf += "\\fs" + std::to_string(std::max(smallestSize, bodySize - smallerBy));
  return rtf + " {\\super\\chftn} \\uc0 " + rtfOfText(text) + '}';
}

}  // namespace mellel::rtf
