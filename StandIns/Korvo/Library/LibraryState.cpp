// The file of a library is looked at before anything in it is trusted; its statements are prepared
// once, and a reference is written by them.
#include "LibraryState.h"

#include "CitationName.h"
#include "FoldedText.h"
#include "LibrarySchema.h"
#include "RandomIdentifier.h"

#include <chrono>
#include <cstdint>
#include <string>

namespace korvo::library {
namespace {

// What a sound library takes a small part of: 100,000 references open in some milliseconds.
constexpr std::chrono::seconds timeToOpen{5};

// Tells contents apart well enough that few have to be compared (FNV-1a).
std::int64_t fingerprint(std::string_view text) {
  std::uint64_t hash = 0xCBF29CE484222325;
  for (const char byte : text) {
    hash = (hash ^ static_cast<unsigned char>(byte)) * 0x100000001B3;
  }
  return static_cast<std::int64_t>(hash);
}

// A few digits at most: what is longer is no year that anybody sorts by.
std::int64_t sortableYear(const std::string &year) {
  return year.empty() || year.size() > 9 ? 0 : std::stoll(year);
}

}  // namespace

std::expected<bool, DatabaseError> Library::State::isEmpty() {
  const auto pages = database.number("PRAGMA page_count");
  if (!pages) {
    return std::unexpected(pages.error());
  }
  return *pages == 0;
}

std::expected<void, DatabaseError> Library::State::checkKind() {
  const TimeLimit limit(database, timeToOpen);
  const auto application = database.number("PRAGMA application_id");
  if (!application) {
    return std::unexpected(application.error());
  }
  if (*application == 0) {
    const auto isEmpty = this->isEmpty();
    if (!isEmpty) {
      return std::unexpected(isEmpty.error());
    }
    if (*isEmpty) {
      return std::unexpected("it is empty, and no library");
    }
  }
  if (auto checked = checkLibrarySchema(database); !checked) {
    return checked;
  }
  // A file cut short still has a sound beginning.
  const auto count = database.number("SELECT count(*) FROM reference");
  if (!count) {
    return std::unexpected(count.error());
  }
  return isTemporary ? std::expected<void, DatabaseError>() : checkLength();
}

// SQLite reads what lacks of the last page as if NULs were there.
std::expected<void, DatabaseError> Library::State::checkLength() {
  const auto pages = database.number("PRAGMA page_count");
  if (!pages) {
    return std::unexpected(pages.error());
  }
  const auto pageSize = database.number("PRAGMA page_size");
  if (!pageSize) {
    return std::unexpected(pageSize.error());
  }
  std::error_code error;
  const std::uintmax_t length = std::filesystem::file_size(name, error);
  if (!error && length < static_cast<std::uintmax_t>(*pages * *pageSize)) {
    return std::unexpected("the file is damaged");
  }
  return {};
}

std::expected<void, DatabaseError> Library::State::prepareStatements() {
  const std::pair<std::optional<Statement> *, const char *> statements[] = {
      {&changesOfOthers, "PRAGMA data_version"},
      {&byIdentifier, "SELECT row FROM reference WHERE identifier = ? ORDER BY row"},
      {&byCitationName, "SELECT row FROM citation_name WHERE name = ? ORDER BY row"},
      {&selectSummary,
       "SELECT uuid, identifier, authors, year, title, kind, container_title FROM reference "
       "WHERE row = ?"},
      {&selectRecord, "SELECT csl FROM record WHERE row = ?"},
      // A cross join keeps this order: by the fingerprint first.
      {&selectSame,
       "SELECT count(*) FROM record CROSS JOIN reference USING (row) "
       "WHERE fingerprint = ? AND csl = ? AND identifier = ?"},
      {&insertReference,
       "INSERT INTO reference (uuid, identifier, authors, year, title, kind, container_title, "
       "sort_authors, sort_year, sort_title, search_text) "
       "VALUES (?, '', '', '', '', '', '', '', 0, '', '')"},
      {&updateReference,
       "UPDATE reference SET identifier = ?, authors = ?, year = ?, title = ?, kind = ?, "
       "container_title = ?, sort_authors = ?, sort_year = ?, sort_title = ?, search_text = ? "
       "WHERE row = ?"},
      {&putRecord, "INSERT OR REPLACE INTO record (row, csl, fingerprint) VALUES (?, ?, ?)"},
      {&insertCitationName, "INSERT INTO citation_name (name, row) VALUES (?, ?)"},
      {&deleteCitationNames, "DELETE FROM citation_name WHERE row = ?"},
  };
  for (const auto &[statement, text] : statements) {
    auto prepared = database.prepare(text);
    if (!prepared) {
      return std::unexpected(prepared.error());
    }
    *statement = std::move(*prepared);
  }
  auto prepared = LooseMatching::prepare(database);
  if (!prepared) {
    return std::unexpected(prepared.error());
  }
  loosely.emplace(std::move(*prepared));
  return {};
}

// SQLite counts the changes of all other connections that this one has come to see, apart from
// its own. Asking takes the lock, so that no other number can become true meanwhile.
std::optional<Library::Version> Library::State::readVersion() {
  const auto row = changesOfOthers->step();
  const std::int64_t number = row && *row ? changesOfOthers->integer(0) : 0;
  changesOfOthers->reset();
  if (!row || !*row) {
    return std::nullopt;
  }
  return Version{.ofOtherPrograms = number, .ofThisOne = database.changes()};
}

std::expected<std::vector<ReferenceRow>, DatabaseError> Library::State::rows(Statement &statement) {
  std::vector<ReferenceRow> result;
  std::expected<bool, DatabaseError> row = statement.step();
  for (; row && *row; row = statement.step()) {
    result.push_back(statement.integer(0));
  }
  statement.reset();
  if (!row) {
    return std::unexpected(row.error());
  }
  return result;
}

std::expected<bool, DatabaseError> Library::State::isThere(const NewReference &reference) {
  selectSame->bind(0, fingerprint(reference.cslJson));
  selectSame->bind(1, reference.cslJson);
  selectSame->bind(2, reference.identifier);
  const auto row = selectSame->step();
  const bool found = row && *row && selectSame->integer(0) > 0;
  selectSame->reset();
  if (!row) {
    return std::unexpected(row.error());
  }
  return found;
}

std::expected<void, LibraryError> Library::State::insert(const NewReference &reference) {
  const auto record = readBibliographicRecord(reference.cslJson);
  if (!record) {
    return error(reference.identifier + ": " + record.error());
  }
  insertReference->bind(0, randomIdentifier());
  if (auto inserted = insertReference->run(); !inserted) {
    return error(inserted.error());
  }
  auto written = write(database.lastInsertedRow(), reference, *record);
  if (!written) {
    return error(written.error());
  }
  return {};
}

std::expected<void, DatabaseError> Library::State::write(ReferenceRow row,
                                                         const NewReference &reference,
                                                         const BibliographicRecord &record) {
  const std::string authors = authorsInOneLine(record);
  int parameter = 0;
  const auto bind = [&](auto value) { updateReference->bind(parameter++, value); };
  bind(std::string_view(reference.identifier));
  bind(std::string_view(authors));
  bind(std::string_view(record.year));
  bind(std::string_view(record.title));
  bind(std::string_view(record.kind));
  bind(std::string_view(record.containerTitle));
  bind(std::string_view(foldedText(authors)));
  bind(sortableYear(record.year));
  bind(std::string_view(foldedText(record.title)));
  bind(std::string_view(foldedText(authors + " " + record.year + " " + record.title + " " +
                                   record.kind + " " + reference.identifier + " " +
                                   record.containerTitle)));
  bind(row);
  if (auto updated = updateReference->run(); !updated) {
    return updated;
  }

  putRecord->bind(0, row);
  putRecord->bind(1, reference.cslJson);
  putRecord->bind(2, fingerprint(reference.cslJson));
  if (auto put = putRecord->run(); !put) {
    return put;
  }

  deleteCitationNames->bind(0, row);
  if (auto removed = deleteCitationNames->run(); !removed) {
    return removed;
  }
  for (const std::string &citationName : citationNames(record)) {
    insertCitationName->bind(0, citationName);
    insertCitationName->bind(1, row);
    if (auto inserted = insertCitationName->run(); !inserted) {
      return inserted;
    }
  }
  return {};
}

}  // namespace korvo::library
