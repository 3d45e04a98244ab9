// The tables:
//   reference      what lists show and sort by, one row each
//   record         the CSL-JSON of each reference, apart, so that lists and searches need
//                  not read past it
//   citation_name  every canonical way in which an author may name a reference, so that a
//                  citation is found by one look-up
// Sorting by author, the order of every first listing, has an index; the other orders are
// sorted on demand, which takes a fraction of a second for the largest libraries.
#include "LibrarySchema.h"

#include <Formats/EventTable.h>

#include <cstdint>
#include <string>
#include <tuple>
#include <vector>

namespace korvo::library {
namespace {

// In the file's header.
constexpr std::int64_t applicationIdentifier = formats::korvoSignature;
constexpr std::int64_t schemaVersion = 1;

constexpr const char *schema = R"(
  CREATE TABLE reference (
    row INTEGER PRIMARY KEY,
    uuid TEXT NOT NULL UNIQUE,
    identifier TEXT NOT NULL,
    authors TEXT NOT NULL,
    year TEXT NOT NULL,
    title TEXT NOT NULL,
    kind TEXT NOT NULL,
    container_title TEXT NOT NULL,
    sort_authors TEXT NOT NULL,
    sort_year INTEGER NOT NULL,
    sort_title TEXT NOT NULL,
    search_text TEXT NOT NULL);
  CREATE TABLE record (
    row INTEGER PRIMARY KEY, csl TEXT NOT NULL, fingerprint INTEGER NOT NULL);
  CREATE TABLE citation_name (
    name TEXT NOT NULL, row INTEGER NOT NULL, PRIMARY KEY (name, row)) WITHOUT ROWID;
  CREATE INDEX reference_identifier ON reference (identifier);
  CREATE INDEX reference_order ON reference (sort_authors, sort_year, sort_title);
  CREATE INDEX record_fingerprint ON record (fingerprint);
  CREATE INDEX citation_name_row ON citation_name (row);
  PRAGMA application_id = 1263687247;
  PRAGMA user_version = 1;
)";

// A table or an index: kind, name, the table that it belongs to, the statement that made it.
using SchemaEntry = std::tuple<std::string, std::string, std::string, std::string>;

// An index that SQLite made for a constraint has no statement.
std::expected<std::vector<SchemaEntry>, DatabaseError> entriesOf(Database &database) {
  auto query =
      database.prepare("SELECT type, name, tbl_name, sql FROM sqlite_schema ORDER BY type, name");
  if (!query) {
    return std::unexpected(query.error());
  }
  std::vector<SchemaEntry> entries;
  std::expected<bool, DatabaseError> row = query->step();
  for (; row && *row; row = query->step()) {
    entries.emplace_back(query->text(0), query->text(1), query->text(2), query->text(3));
  }
  if (!row) {
    return std::unexpected(row.error());
  }
  return entries;
}

std::expected<std::vector<SchemaEntry>, DatabaseError> ownEntries() {
  auto database = Database::temporary();
  if (!database) {
    return std::unexpected(database.error());
  }
  if (auto made = makeLibrarySchema(*database); !made) {
    return std::unexpected(made.error());
  }
  return entriesOf(*database);
}

std::expected<void, DatabaseError> checkHeader(Database &database) {
  const auto application = database.number("PRAGMA application_id");
  if (!application) {
    return std::unexpected(application.error());
  }
  if (*application != applicationIdentifier) {
    return std::unexpected("this is a database of another program");
  }
  const auto version = database.number("PRAGMA user_version");
  if (!version) {
    return std::unexpected(version.error());
  }
  if (*version != schemaVersion) {
    return std::unexpected("this library was written by another version (" +
                           std::to_string(*version) + ")");
  }
  return {};
}

}  // namespace

std::expected<void, DatabaseError> makeLibrarySchema(Database &database) {
  auto transaction = Transaction::begin(database);
  if (!transaction) {
    return std::unexpected(transaction.error());
  }
  if (auto made = database.execute(schema); !made) {
    return made;
  }
  return transaction->commit();
}

std::expected<void, DatabaseError> checkLibrarySchema(Database &database) {
  if (auto checked = checkHeader(database); !checked) {
    return checked;
  }
  const auto present = entriesOf(database);
  if (!present) {
    return std::unexpected(present.error());
  }
  const auto expected = ownEntries();
  if (!expected) {
    return std::unexpected(expected.error());
  }
  if (*present != *expected) {
    return std::unexpected(
        "its tables are not those of a library: it is damaged, or somebody else's program changed "
        "it");
  }
  return {};
}

}  // namespace korvo::library
