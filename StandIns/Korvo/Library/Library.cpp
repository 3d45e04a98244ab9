// References in SQLite: what is asked of them and done to them, and what of it belongs together in
// one transaction. The statements are LibraryState's, the tables LibrarySchema's.
#include "Library.h"

#include "BibliographicRecord.h"
#include "CitationName.h"
#include "FoldedText.h"
#include "LibrarySchema.h"
#include "LibraryState.h"

#include <chrono>
#include <utility>

namespace korvo::library {
namespace {

// What a sound library takes a small part of: all pages of 100,000 references are read in a second.
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

}  // namespace

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
