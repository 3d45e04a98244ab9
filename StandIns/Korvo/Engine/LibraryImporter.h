// Reads the libraries of other reference managers: BibTeX and BibLaTeX (.bib, .bibtex,
// .biblatex), RIS (.ris) and CSL-JSON (.json).
//
// One broken entry must not cost the others: what cannot be read is reported with its
// line, and everything else is imported.
#pragma once

#include <cstddef>
#include <expected>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace korvo::engine {

// Texts are UTF-8.
struct ImportedReference {
  // The citation identifier as the file gives it. May be empty (the file gives none), and
  // two references of a file may bear the same (reported as a problem; both are kept, so
  // that a citation by it is seen to be ambiguous).
  std::string citationKey;
  // A CSL-JSON object; its "id" is the citation key, or empty.
  std::string cslJson;

  bool operator==(const ImportedReference &) const = default;
};

// Whether the file's extension names a kind that can be read, in capital or small letters.
bool isImportable(const std::filesystem::path &file);

struct ImportProblem {
  std::filesystem::path file;
  std::size_t line = 0;  // counted from 1, where the entry begins; 0: the file as a whole
  std::string reason;

  // "library.bib:12: reason", one line.
  std::string message() const;
};

struct ImportResult {
  std::vector<ImportedReference> references;  // in the order of the file
  std::vector<ImportProblem> problems;        // likewise
};

// Is told now and then how far the reading of a file is: "1200 of 7000 entries". Files that are
// read at once say nothing.
using ImportProgress =
    std::function<void(const std::filesystem::path &file, std::string_view soFar)>;

// Reads a file as LibraryImporter::importFile does.
using ImportFunction = std::function<std::expected<ImportResult, std::string>(
    const std::filesystem::path &file, const ImportProgress &progress)>;

class LibraryImporter {
 public:
  // Nothing is started until the first file that needs it.
  LibraryImporter();
  ~LibraryImporter();
  LibraryImporter(LibraryImporter &&) noexcept;
  LibraryImporter &operator=(LibraryImporter &&) noexcept;

  // The format is told by the file's extension. The error is one line that names the
  // file: it cannot be read, its kind is not known, or nothing in it could be understood.
  std::expected<ImportResult, std::string> importFile(const std::filesystem::path &file,
                                                      const ImportProgress &progress = {});

 private:
  struct Machine;
  std::unique_ptr<Machine> machine_;
};

}  // namespace korvo::engine
