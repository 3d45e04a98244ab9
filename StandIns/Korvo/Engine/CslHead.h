// What a citation style says about itself, read from its CSL file.
#pragma once

#include "StyleCatalog.h"

#include <expected>
#include <filesystem>
#include <string>

namespace korvo::engine {

struct CslHead {
  std::string title;   // UTF-8, blanks put in order
  std::string locale;  // its "default-locale"; may be empty
  std::string parent;  // base name of the style that it depends on; empty: independent
  CitationFormat citationFormat = CitationFormat::authorDate;
  bool hasBibliography = false;
  bool usesSuperscript = false;
};

// How far to read: the title comes first, and an index needs no more.
enum class CslPart { title, everything };

// The error is one line with the file and the place in it.
std::expected<CslHead, std::string> readCslHead(const std::filesystem::path &file, CslPart part);

}  // namespace korvo::engine
