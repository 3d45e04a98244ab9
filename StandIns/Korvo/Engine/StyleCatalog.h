// The citation styles installed on this machine, found by title or by file name.
//
// Ten thousand style files are far too many to read before a first window opens. So
// nothing is read ahead: a style asked for by its file name costs one file, and only a
// look-up by title, or the list of all, reads every head once. That index is kept in the
// user's cache directory until the directories of the styles change.
#pragma once

#include <expected>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace korvo::engine {

enum class CitationFormat { authorDate, author, numeric, label, note };

// What a list of styles shows. Texts are UTF-8.
struct StyleName {
  std::string baseName;  // the file's name without ".csl": "apa"
  std::string title;     // "American Psychological Association 7th edition"

  bool operator==(const StyleName &) const = default;
};

// A style ready to format with. A dependent style (a journal that follows another style)
// has its own names and locale, and everything else from its parent.
struct Style {
  StyleName name;
  std::filesystem::path file;  // of the independent style: the one that holds the rules
  std::string locale;          // the language in which it differs from these rules; may be empty
  CitationFormat citationFormat = CitationFormat::authorDate;
  bool hasBibliography = true;
  bool usesSuperscript = false;  // whether the in-text citation is set as superscript
};

class StyleCatalog {
 public:
  // Reads nothing. `styles` is the directory of independent styles, with the dependent
  // ones in its folder "dependent"; `indexFile` is where the list of titles is kept
  // (empty: nowhere).
  StyleCatalog(std::filesystem::path styles, std::filesystem::path indexFile);
  // The styles of the system, the index in the user's cache directory.
  static StyleCatalog installed();

  // By the file's base name or by title, ignoring the case of letters. A file named exactly so
  // comes first, then the title.
  // The error is one line: no such style, or what is wrong with its file.
  std::expected<Style, std::string> find(std::string_view name);

  // Every style, sorted by title.
  const std::vector<StyleName> &all();

 private:
  std::filesystem::path fileOf(std::string_view baseName) const;
  // Null when there is none.
  const StyleName *findInList(std::string_view foldedName);
  std::vector<std::filesystem::path> directories() const;

  std::filesystem::path styles_;
  std::filesystem::path indexFile_;
  std::optional<std::vector<StyleName>> names_;
  std::map<std::string, std::size_t, std::less<>> byTitle_;  // folded title to place in names_
};

}  // namespace korvo::engine
