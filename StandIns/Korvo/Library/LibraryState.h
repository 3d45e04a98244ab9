// What an open library holds.
#pragma once

#include "BibliographicRecord.h"
#include "Database.h"
#include "Library.h"
#include "LooseMatching.h"

#include <expected>
#include <filesystem>
#include <optional>
#include <utility>
#include <vector>

namespace korvo::library {

// The connection with the statements that every scan needs, prepared once.
struct Library::State {
  State(Database opened, std::filesystem::path libraryName)
      : database(std::move(opened)), name(std::move(libraryName)) {}

  std::unexpected<LibraryError> error(const DatabaseError &reason) const {
    return std::unexpected(name.string() + ": " + reason);
  }

  std::expected<bool, DatabaseError> isEmpty();
  std::expected<void, DatabaseError> checkKind();
  std::expected<void, DatabaseError> checkLength();
  std::expected<void, DatabaseError> prepareStatements();
  std::optional<Version> readVersion();
  std::expected<std::vector<ReferenceRow>, DatabaseError> rows(Statement &statement);
  std::expected<bool, DatabaseError> isThere(const NewReference &reference);
  std::expected<void, LibraryError> insert(const NewReference &reference);
  std::expected<void, DatabaseError> write(ReferenceRow row, const NewReference &reference,
                                           const BibliographicRecord &record);

  Database database;
  std::filesystem::path name;
  bool isTemporary = false;
  bool keepsReading = false;
  std::optional<Version> versionRead;
  std::optional<Statement> changesOfOthers;
  std::optional<Statement> byIdentifier;
  std::optional<Statement> byCitationName;
  std::optional<LooseMatching> loosely;
  std::optional<Statement> selectSummary;
  std::optional<Statement> selectRecord;
  std::optional<Statement> selectSame;
  std::optional<Statement> insertReference;
  std::optional<Statement> updateReference;
  std::optional<Statement> putRecord;
  std::optional<Statement> insertCitationName;
  std::optional<Statement> deleteCitationNames;
};

}  // namespace korvo::library
