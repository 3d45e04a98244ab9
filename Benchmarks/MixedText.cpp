#include "MixedText.h"

#include <string_view>

namespace benchmarks {

namespace {

// Cuts the last repetition short, wherever that falls.
std::u16string repeated(std::u16string_view pattern, std::size_t units) {
  std::u16string text;
  text.reserve(units + pattern.size());
  while (text.size() < units) {
    text.append(pattern);
  }
  text.resize(units);
  return text;
}

}  // namespace

std::u16string plainASCII(std::size_t units) {
  return repeated(
      u"Watson, J. D. and Crick, F. H. C. (1953) Molecular structure of nucleic acids: a structure "
      u"for deoxyribose nucleic acid. Nature 171, pp. 737-738. It has not escaped the authors' "
      u"notice that the pairing suggests a copying mechanism for the genetic material. ",
      units);
}

std::u16string mixedText(std::size_t units) {
  return repeated(
      u"Erd\u0151s, P. and R\u00E9nyi, A. (1959) On random graphs I. Publ. Math. Debrecen 6, "
      u"pp. 290\u2013297. G\u00F6del, K. (1931) \u00DCber formal unentscheidbare S\u00E4tze der "
      u"{Principia Mathematica}. It's in every author's library, \U0001F600 as they say.\n",
      units);
}

std::u16string escapesOnly(std::size_t units) {
  return repeated(u"\u4E2D\u6587\u53C2\u8003'{}\\\n\u6587\u732E\U0001F600\u00E9\u2019\uFFFD",
                  units);
}

std::u16string mixedRTF(std::size_t units) {
  return repeated(
      u"Watson, J. D. and Crick, F. H. C. ({\\b 1953}) Molecular structure of nucleic acids: a "
      u"structure for {\\ul deoxyribose {\\i nucleic} acid}. {\\i Nature} 171, pp. 737-738. It has "
      u"not escaped the authors\\rquote notice that {\\b {\\super 1}} the pairing suggests more.\n",
      units);
}

std::u16string controlsOnly(std::size_t units) {
  return repeated(u"{\\b {\\i {\\super }}}\\\\\\rquote\\'7b \\uc0\\u233 \n{}", units);
}

}  // namespace benchmarks
