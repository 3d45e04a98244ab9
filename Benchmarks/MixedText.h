// Texts to measure with, the same at every run.
#pragma once

#include <cstddef>
#include <string>

namespace benchmarks {

// What a bibliography in English holds: ASCII with an apostrophe or a brace now and then.
std::u16string plainASCII(std::size_t units);
// The same with a character above ASCII in every line: dashes, accents, an emoji.
std::u16string mixedText(std::size_t units);
// Nothing but units that need an escape: Chinese, apostrophes, braces, line feeds.
std::u16string escapesOnly(std::size_t units);

// ASCII with groups, quote words and line feeds, as pidgin RTF comes from a host.
std::u16string mixedRTF(std::size_t units);
// Nothing but control words and braces.
std::u16string controlsOnly(std::size_t units);

}  // namespace benchmarks
