#include "LibraryFile.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace korvo::library {
namespace {

std::vector<NewReference> newReferences(std::vector<engine::ImportedReference> imported) {
  std::vector<NewReference> references;
  references.reserve(imported.size());
  for (engine::ImportedReference &reference : imported) {
    references.push_back(
        {.identifier = std::move(reference.citationKey), .cslJson = std::move(reference.cslJson)});
  }
  return references;
}

std::expected<Library::Addition, LibraryError> addToLibraryFile(
    std::span<const NewReference> references, const std::filesystem::path &database) {
  auto library = Library::openOrCreate(database);
  if (!library) {
    return std::unexpected(library.error());
  }
  if (auto whole = library->checkWhole(); !whole) {
    return std::unexpected(whole.error());
  }
  return library->add(references);
}

// Another program may have put something in meanwhile. Opening also undoes what was left half done.
void removeIfEmpty(const std::filesystem::path &database) {
  std::error_code ignored;
  bool isEmpty = false;
  {
    auto library = Library::open(database);
    isEmpty =
        library ? library->count() == std::size_t{0} : std::filesystem::is_empty(database, ignored);
  }
  if (isEmpty) {
    std::filesystem::remove(database, ignored);
  }
}

}  // namespace

std::expected<OpenedLibrary, std::string> openLibraryFile(const std::filesystem::path &file,
                                                          const engine::ImportFunction &import,
                                                          const engine::ImportProgress &progress) {
  if (!engine::isImportable(file)) {
    auto library = Library::open(file);
    if (!library) {
      return std::unexpected(library.error());
    }
    return OpenedLibrary{.library = *std::move(library), .problems = {}};
  }
  auto imported = import(file, progress);
  if (!imported) {
    return std::unexpected(imported.error());
  }
  auto library = Library::temporary(file);
  if (!library) {
    return std::unexpected(library.error());
  }
  const auto added = library->add(newReferences(std::move(imported->references)));
  if (!added) {
    return std::unexpected(added.error());
  }
  return OpenedLibrary{.library = *std::move(library), .problems = std::move(imported->problems)};
}

std::expected<ImportReport, std::string> importIntoLibraryFile(
    std::span<const std::filesystem::path> files, const std::filesystem::path &database,
    const engine::ImportFunction &import, const engine::ImportProgress &progress) {
  // Everything is read before the database is touched.
  ImportReport report;
  std::vector<NewReference> references;
  for (const std::filesystem::path &file : files) {
    auto imported = import(file, progress);
    if (!imported) {
      return std::unexpected(imported.error());
    }
    std::ranges::move(newReferences(std::move(imported->references)),
                      std::back_inserter(references));
    std::ranges::move(imported->problems, std::back_inserter(report.problems));
  }
  std::error_code ignored;
  const bool isNew = !std::filesystem::exists(database, ignored);
  const auto addition = addToLibraryFile(references, database);
  if (!addition) {
    if (isNew) {
      removeIfEmpty(database);
    }
    return std::unexpected(addition.error());
  }
  report.addition = *addition;
  return report;
}

}  // namespace korvo::library
