// The citations of a document to measure with, the same at every run.
#pragma once

#include <cstddef>
#include <string>

namespace benchmarks {

// After so many the texts repeat: enough that no two neighbours are alike, and few enough that
// prepared answers do not crowd the processor's caches.
inline constexpr std::size_t differentCitations = 1024;

// The citation that stands at this place of a document, in UTF-8. All name an identifier, some
// pages and options, one in ten a name beyond ASCII.
std::string citationAt(std::size_t index);

}  // namespace benchmarks
