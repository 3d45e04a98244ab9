// References in SQLite: the statements, and which of them belong together in one transaction. The
// tables are LibrarySchema's.
#include "Library.h"

#include "BibliographicRecord.h"
#include "CitationName.h"
#include "Database.h"
#include "FoldedText.h"
#include "LibrarySchema.h"
#include "LooseMatching.h"
#include "RandomIdentifier.h"

#include <chrono>
#include <utility>

namespace korvo::library {
namespace {

// What a sound library takes a small part of: 100,000 references open in some milliseconds, and all
// of their pages are read in a second.
constexpr std::chrono::seconds timeToOpen{5};
constexpr std::chrono::seconds timeToReadAll{60};

// The orders in SQL, for ascending and descending.
const char *orderClause(ListOrder order) {
  switch (order.column) {
    case SortColumn::authors:
      return order.ascending ? "sort_authors, sort_year, sort_title"
                             : "sort_authors DESC, sort_year DESC, sort_title DESC";
    case SortColumn::year:
      return order.ascending ? "sort_year, sort_authors, sort_title"
                             : "sort_year DESC, sort_authors, sort_title";
    case SortColumn::title:
      return order.ascending ? "sort_title, sort_authors" : "sort_title DESC, sort_authors";
    case SortColumn::kind:
      return order.ascending ? "kind, sort_authors, sort_year"
                             : "kind DESC, sort_authors, sort_year";
    case SortColumn::identifier:
      return order.ascending ? "identifier COLLATE NOCASE, sort_authors"
                             : "identifier COLLATE NOCASE DESC, sort_authors";
  }
  return "row";
}

std::vector<std::string> words(std::string_view foldedSearchText) {
  std::vector<std::string> result;
  while (!foldedSearchText.empty()) {
    const std::size_t blank = foldedSearchText.find(' ');
    result.emplace_back(foldedSearchText.substr(0, blank));
    foldedSearchText =
        blank == std::string_view::npos ? std::string_view() : foldedSearchText.substr(blank + 1);
  }
  return result;
}

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

Library::Library(std::unique_ptr<State> state) : state_(std::move(state)) {}
Library::Library(Library &&) noexcept = default;
Library &Library::operator=(Library &&) noexcept = default;
Library::~Library() = default;

std::expected<Library, LibraryError> Library::opened(std::unique_ptr<State> state) {
  if (auto checked = state->checkKind(); !checked) {
    return state->error(checked.error());
  }
  if (auto prepared = state->prepareStatements(); !prepared) {
    return state->error(prepared.error());
  }
  return Library(std::move(state));
}

std::expected<Library, LibraryError> Library::open(const std::filesystem::path &file) {
  auto database = Database::openExisting(file);
  if (!database) {
    return std::unexpected(file.string() + ": " + database.error());
  }
  return opened(std::make_unique<State>(std::move(*database), file));
}

std::expected<Library, LibraryError> Library::openOrCreate(const std::filesystem::path &file) {
  auto database = Database::openOrCreate(file);
  if (!database) {
    return std::unexpected(file.string() + ": " + database.error());
  }
  auto state = std::make_unique<State>(std::move(*database), file);
  // Asked of the database and not of the file, which may hold the beginning of a library that
  // another process was ended in making.
  const auto isEmpty = state->isEmpty();
  if (!isEmpty) {
    return state->error(isEmpty.error());
  }
  if (*isEmpty) {
    // SQLite takes a file of a single byte for an empty one.
    std::error_code ignored;
    if (std::filesystem::file_size(file, ignored) == 1) {
      return state->error("this is no library, or it is damaged");
    }
    if (auto made = makeLibrarySchema(state->database); !made) {
      return state->error(made.error());
    }
  }
  return opened(std::move(state));
}

std::expected<Library, LibraryError> Library::temporary(const std::filesystem::path &name) {
  auto database = Database::temporary();
  if (!database) {
    return std::unexpected(name.string() + ": " + database.error());
  }
  auto state = std::make_unique<State>(std::move(*database), name);
  state->isTemporary = true;
  if (auto made = makeLibrarySchema(state->database); !made) {
    return state->error(made.error());
  }
  return opened(std::move(state));
}

const std::filesystem::path &Library::name() const { return state_->name; }

bool Library::isTemporary() const { return state_->isTemporary; }

std::expected<Library::Addition, LibraryError> Library::add(
    std::span<const NewReference> references) {
  stopReading();
  auto transaction = Transaction::begin(state_->database);
  if (!transaction) {
    return state_->error(transaction.error());
  }
  Addition addition;
  for (const NewReference &reference : references) {
    const auto isThere = state_->isThere(reference);
    if (!isThere) {
      return state_->error(isThere.error());
    }
    if (*isThere) {
      ++addition.alreadyThere;
      continue;
    }
    if (auto inserted = state_->insert(reference); !inserted) {
      return std::unexpected(inserted.error());
    }
    ++addition.added;
  }
  if (auto committed = transaction->commit(); !committed) {
    return state_->error(committed.error());
  }
  return addition;
}

std::expected<std::vector<ReferenceRow>, LibraryError> Library::matching(std::string_view tag) {
  if (tag.empty()) {
    return std::vector<ReferenceRow>();
  }
  state_->byIdentifier->bind(0, tag);
  auto found = state_->rows(*state_->byIdentifier);
  if (found && found->empty()) {
    state_->byCitationName->bind(0, canonicalCitationName(tag));
    found = state_->rows(*state_->byCitationName);
  }
  if (found && found->empty()) {
    found = state_->loosely->matching(tag);
  }
  if (!found) {
    return state_->error(found.error());
  }
  return *std::move(found);
}

std::expected<std::vector<ReferenceRow>, LibraryError> Library::similar(
    std::string_view visibleText) {
  auto found = state_->loosely->similar(visibleText);
  if (!found) {
    return state_->error(found.error());
  }
  return *std::move(found);
}

std::expected<void, LibraryError> Library::checkWhole() {
  const TimeLimit limit(state_->database, timeToReadAll);
  auto check = state_->database.prepare("PRAGMA quick_check(1)");
  if (!check) {
    return state_->error(check.error());
  }
  const auto row = check->step();
  if (!row) {
    return state_->error(row.error());
  }
  if (!*row || check->text(0) != "ok") {
    return state_->error("the file is damaged");
  }
  return {};
}

std::expected<std::size_t, LibraryError> Library::count() {
  const auto number = state_->database.number("SELECT count(*) FROM reference");
  if (!number) {
    return state_->error(number.error());
  }
  return static_cast<std::size_t>(*number);
}

std::expected<std::vector<ReferenceRow>, LibraryError> Library::list(ListOrder order,
                                                                     std::string_view searchText) {
  const std::vector<std::string> searched = words(foldedText(searchText));
  std::string query = "SELECT row FROM reference";
  for (std::size_t index = 0; index < searched.size(); ++index) {
    query += index == 0 ? " WHERE " : " AND ";
    query += "instr(search_text, ?) > 0";
  }
  query += " ORDER BY ";
  query += orderClause(order);
  auto statement = state_->database.prepare(query);
  if (!statement) {
    return state_->error(statement.error());
  }
  for (std::size_t index = 0; index < searched.size(); ++index) {
    statement->bind(static_cast<int>(index), searched[index]);
  }
  auto found = state_->rows(*statement);
  if (!found) {
    return state_->error(found.error());
  }
  return *std::move(found);
}

std::expected<std::optional<ReferenceSummary>, LibraryError> Library::summary(ReferenceRow row) {
  Statement &statement = *state_->selectSummary;
  statement.bind(0, row);
  const auto found = statement.step();
  std::optional<ReferenceSummary> summary;
  if (found && *found) {
    const auto text = [&](int column) { return std::string(statement.text(column)); };
    summary = ReferenceSummary{.uuid = text(0),
                               .identifier = text(1),
                               .authors = text(2),
                               .year = text(3),
                               .title = text(4),
                               .kind = text(5),
                               .containerTitle = text(6)};
  }
  statement.reset();
  if (!found) {
    return state_->error(found.error());
  }
  return summary;
}

std::expected<std::optional<std::string>, LibraryError> Library::cslJson(ReferenceRow row) {
  Statement &statement = *state_->selectRecord;
  statement.bind(0, row);
  const auto found = statement.step();
  std::optional<std::string> record;
  if (found && *found) {
    record = std::string(statement.text(0));
  }
  statement.reset();
  if (!found) {
    return state_->error(found.error());
  }
  return record;
}

std::expected<std::optional<std::string>, LibraryError> Library::citationTag(ReferenceRow row) {
  const auto described = summary(row);
  if (!described) {
    return std::unexpected(described.error());
  }
  if (!*described) {
    return std::nullopt;
  }
  if (!(*described)->identifier.empty()) {
    return (*described)->identifier;
  }
  const auto json = cslJson(row);
  if (!json) {
    return std::unexpected(json.error());
  }
  if (!*json) {
    return std::nullopt;
  }
  const auto record = readBibliographicRecord(**json);
  return record ? firstAuthorAndYear(*record) : std::nullopt;
}

// Where it cannot be had, each question goes by itself, and tells what is wrong.
void Library::keepReading() {
  if (state_->keepsReading) {
    return;
  }
  state_->keepsReading = state_->database.execute("BEGIN").has_value();
  if (state_->keepsReading) {
    state_->versionRead = state_->readVersion();
  }
}

std::optional<Library::Version> Library::version() const { return state_->versionRead; }

void Library::stopReading() {
  state_->versionRead.reset();
  if (std::exchange(state_->keepsReading, false)) {
    (void)state_->database.execute("COMMIT");
  }
}

std::expected<void, LibraryError> Library::replace(ReferenceRow row,
                                                   const NewReference &reference) {
  return edit(row, [&](const NewReference &) { return reference; });
}

std::expected<bool, LibraryError> Library::hasIdentifier(std::string_view identifier) {
  state_->byIdentifier->bind(0, identifier);
  const auto rows = state_->rows(*state_->byIdentifier);
  if (!rows) {
    return state_->error(rows.error());
  }
  return !rows->empty();
}

std::expected<void, LibraryError> Library::edit(ReferenceRow row, const Edit &change) {
  stopReading();
  auto transaction = Transaction::begin(state_->database);
  if (!transaction) {
    return state_->error(transaction.error());
  }
  const auto present = reference(row);
  if (!present) {
    return std::unexpected(present.error());
  }
  if (!*present) {
    return state_->error("the reference is no longer there");
  }
  const std::expected<NewReference, std::string> edited = change(**present);
  if (!edited) {
    return state_->error(edited.error());
  }
  if (edited->identifier != (*present)->identifier && !edited->identifier.empty()) {
    const auto isTaken = hasIdentifier(edited->identifier);
    if (!isTaken) {
      return std::unexpected(isTaken.error());
    }
    if (*isTaken) {
      return state_->error("another reference bears the identifier \"" + edited->identifier +
                           "\" already");
    }
  }
  const auto record = readBibliographicRecord(edited->cslJson);
  if (!record) {
    return state_->error(record.error());
  }
  if (auto written = state_->write(row, *edited, *record); !written) {
    return state_->error(written.error());
  }
  if (auto committed = transaction->commit(); !committed) {
    return state_->error(committed.error());
  }
  return {};
}

std::expected<std::optional<NewReference>, LibraryError> Library::reference(ReferenceRow row) {
  const auto summary = this->summary(row);
  if (!summary) {
    return std::unexpected(summary.error());
  }
  auto record = cslJson(row);
  if (!record) {
    return std::unexpected(record.error());
  }
  if (!*summary || !*record) {
    return std::nullopt;
  }
  return NewReference{.identifier = (*summary)->identifier, .cslJson = *std::move(*record)};
}

}  // namespace korvo::library
