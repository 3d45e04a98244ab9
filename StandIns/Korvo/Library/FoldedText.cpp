// Unicode's own tables do the folding: compatibility decomposition, removal of the marks,
// a transliteration of the Latin letters that have no decomposition, case folding. That
// costs microseconds; plain ASCII, most of any library, takes a short cut past it.
#include "FoldedText.h"

#include <Formats/Unicode.h>
#include <StandIns/Korvo/Engine/CaseFolding.h>

#include <unicode/translit.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include <cstdint>
#include <memory>
#include <stdexcept>

namespace korvo::library {
namespace {

std::unique_ptr<icu::Transliterator> makeTransliterator() {
  UErrorCode status = U_ZERO_ERROR;
  std::unique_ptr<icu::Transliterator> transliterator(icu::Transliterator::createInstance(
      "NFKD; [:Nonspacing Mark:] Remove; Latin-ASCII", UTRANS_FORWARD, status));
  // The rules are part of every build of the Unicode library.
  if (U_FAILURE(status)) {
    throw std::runtime_error(u_errorName(status));
  }
  return transliterator;
}

std::string withoutMarks(std::string_view text) {
  static const std::unique_ptr<icu::Transliterator> transliterator = makeTransliterator();
  icu::UnicodeString unicode = icu::UnicodeString::fromUTF8(
      icu::StringPiece(text.data(), static_cast<std::int32_t>(text.size())));
  // Blanks first: some of them decompose into a blank with a mark, others fall away.
  for (std::int32_t index = 0; index < unicode.length(); ++index) {
    if (u_isUWhiteSpace(unicode.charAt(index))) {
      unicode.setCharAt(index, u' ');
    }
  }
  transliterator->transliterate(unicode);
  std::string result;
  unicode.toUTF8String(result);
  return result;
}

bool isBlank(char byte) { return byte == ' ' || (byte >= '\t' && byte <= '\r'); }

std::string withSingleBlanks(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  for (const char byte : text) {
    if (!isBlank(byte)) {
      result.push_back(byte);
    } else if (!result.empty() && result.back() != ' ') {
      result.push_back(' ');
    }
  }
  if (!result.empty() && result.back() == ' ') {
    result.pop_back();
  }
  return result;
}

}  // namespace

std::string foldedText(std::string_view text) {
  return withSingleBlanks(
      engine::caseFolded(formats::isASCII(text) ? std::string(text) : withoutMarks(text)));
}

}  // namespace korvo::library
