// The files that can be opened as a library: a library's own database, or another reference
// manager's export.
#pragma once

#include "Library.h"

#include <StandIns/Korvo/Engine/LibraryImporter.h>

#include <expected>
#include <filesystem>
#include <span>
#include <string>
#include <vector>

namespace korvo::library {

struct OpenedLibrary {
  Library library;
  std::vector<engine::ImportProblem> problems;  // entries of the export that are not in it
};

// An export, read by the function, becomes a library in memory: changes to it last until the
// program ends. The error is one line that names the file.
std::expected<OpenedLibrary, std::string> openLibraryFile(
    const std::filesystem::path &file, const engine::ImportFunction &import,
    const engine::ImportProgress &progress = {});

struct ImportReport {
  Library::Addition addition;
  std::vector<engine::ImportProblem> problems;
};

// Puts everything that the files hold into the library's own database, which is made if
// need be. All or, on an error, nothing: a damaged library is left as it is, and one that was
// made in vain goes away.
std::expected<ImportReport, std::string> importIntoLibraryFile(
    std::span<const std::filesystem::path> files, const std::filesystem::path &database,
    const engine::ImportFunction &import, const engine::ImportProgress &progress = {});

}  // namespace korvo::library
