#include "Database.h"

#include <Formats/OneLine.h>

#include <sqlite3.h>

#include <cstring>
#include <utility>

namespace korvo::library {
namespace {

// How long another program may keep the file to itself before that is reported.
constexpr int patienceInMilliseconds = 1000;

// What the system said of a failure, where that is known.
DatabaseError withReason(const char *line, int systemError) {
  return systemError == 0 ? line : std::string(line) + ": " + std::strerror(systemError);
}

// For the user, SQLite's own words only where there are no better ones. They may quote the file.
DatabaseError describe(int status, const char *sqliteMessage, int systemError) {
  switch (status & 0xFF) {  // the low byte is the kind, the rest are details
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
      return "another program is using it";
    case SQLITE_CORRUPT:
      return "the file is damaged";
    case SQLITE_NOTADB:
      return "this is no library, or it is damaged";
    case SQLITE_CANTOPEN:
      return withReason("it cannot be opened", systemError);
    case SQLITE_IOERR:
      return withReason("it cannot be read or written", systemError);
    case SQLITE_READONLY:
      return "it cannot be written to";
    case SQLITE_INTERRUPT:
      return "it takes too long to read, and may be damaged";
    case SQLITE_FULL:
      return "the disk is full";
    default:
      return formats::inOneLine(sqliteMessage);
  }
}

// SQLite takes some names for something else than files: ":memory:", and what begins with "file:".
std::filesystem::path pathOf(const std::filesystem::path &file) {
  std::error_code error;
  const std::filesystem::path absolute = std::filesystem::absolute(file, error);
  return error ? file : absolute;
}

// A file from somebody else: no statement of its own runs, and none may write its schema.
void trustNoSchema(sqlite3 *connection) {
  sqlite3_db_config(connection, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
  sqlite3_db_config(connection, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
  sqlite3_db_config(connection, SQLITE_DBCONFIG_ENABLE_TRIGGER, 0, nullptr);
  sqlite3_db_config(connection, SQLITE_DBCONFIG_ENABLE_VIEW, 0, nullptr);
}

std::unexpected<DatabaseError> lastError(sqlite3 *connection) {
  return std::unexpected(describe(sqlite3_extended_errcode(connection), sqlite3_errmsg(connection),
                                  sqlite3_system_errno(connection)));
}

}  // namespace

Statement::Statement(sqlite3_stmt *statement) : statement_(statement) {}

void Statement::Finalize::operator()(sqlite3_stmt *statement) const { sqlite3_finalize(statement); }

void Statement::bind(int parameter, std::string_view text) {
  sqlite3_bind_text64(statement_.get(), parameter + 1, text.data() == nullptr ? "" : text.data(),
                      text.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
}

void Statement::bind(int parameter, std::int64_t number) {
  sqlite3_bind_int64(statement_.get(), parameter + 1, number);
}

std::expected<bool, DatabaseError> Statement::step() {
  const int status = sqlite3_step(statement_.get());
  if (status == SQLITE_ROW) {
    return true;
  }
  if (status == SQLITE_DONE) {
    return false;
  }
  return lastError(sqlite3_db_handle(statement_.get()));
}

std::expected<void, DatabaseError> Statement::run() {
  const std::expected<bool, DatabaseError> outcome = step();
  reset();
  if (!outcome) {
    return std::unexpected(outcome.error());
  }
  return {};
}

void Statement::reset() { sqlite3_reset(statement_.get()); }

std::string_view Statement::text(int column) const {
  const unsigned char *bytes = sqlite3_column_text(statement_.get(), column);
  if (bytes == nullptr) {
    return {};
  }
  return {reinterpret_cast<const char *>(bytes),
          static_cast<std::size_t>(sqlite3_column_bytes(statement_.get(), column))};
}

std::int64_t Statement::integer(int column) const {
  return sqlite3_column_int64(statement_.get(), column);
}

Database::Database(sqlite3 *connection) : connection_(connection) {}

void Database::Close::operator()(sqlite3 *connection) const { sqlite3_close_v2(connection); }

std::expected<Database, DatabaseError> Database::open(const char *file, int flags) {
  sqlite3 *connection = nullptr;
  const int status = sqlite3_open_v2(file, &connection, flags | SQLITE_OPEN_EXRESCODE, nullptr);
  Database database(connection);  // must be closed in any case
  if (status != SQLITE_OK) {
    return std::unexpected(connection == nullptr ? DatabaseError("out of memory")
                                                 : describe(status, sqlite3_errmsg(connection),
                                                            sqlite3_system_errno(connection)));
  }
  sqlite3_busy_timeout(connection, patienceInMilliseconds);
  trustNoSchema(connection);
  return database;
}

std::expected<Database, DatabaseError> Database::openExisting(const std::filesystem::path &file) {
  return open(pathOf(file).c_str(), SQLITE_OPEN_READWRITE);
}

std::expected<Database, DatabaseError> Database::openOrCreate(const std::filesystem::path &file) {
  return open(pathOf(file).c_str(), SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
}

std::expected<Database, DatabaseError> Database::temporary() {
  return open(":memory:", SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_MEMORY);
}

std::expected<void, DatabaseError> Database::execute(const char *statements) {
  if (sqlite3_exec(connection_.get(), statements, nullptr, nullptr, nullptr) != SQLITE_OK) {
    return lastError(connection_.get());
  }
  return {};
}

std::expected<Statement, DatabaseError> Database::prepare(std::string_view statement) {
  sqlite3_stmt *prepared = nullptr;
  if (sqlite3_prepare_v3(connection_.get(), statement.data(), static_cast<int>(statement.size()),
                         SQLITE_PREPARE_PERSISTENT, &prepared, nullptr) != SQLITE_OK) {
    return lastError(connection_.get());
  }
  return Statement(prepared);
}

std::expected<std::int64_t, DatabaseError> Database::number(std::string_view query) {
  std::expected<Statement, DatabaseError> statement = prepare(query);
  if (!statement) {
    return std::unexpected(statement.error());
  }
  const std::expected<bool, DatabaseError> row = statement->step();
  if (!row) {
    return std::unexpected(row.error());
  }
  return *row ? statement->integer(0) : 0;
}

std::int64_t Database::changes() const { return sqlite3_total_changes64(connection_.get()); }

std::int64_t Database::lastInsertedRow() const {
  return sqlite3_last_insert_rowid(connection_.get());
}

// So many steps of SQLite's take less than a millisecond.
constexpr int stepsBetweenLooks = 10'000;

TimeLimit::TimeLimit(Database &database, std::chrono::steady_clock::duration time)
    : database_(database), end_(std::chrono::steady_clock::now() + time) {
  sqlite3_progress_handler(database_.connection_.get(), stepsBetweenLooks, isOver, this);
}

TimeLimit::~TimeLimit() {
  sqlite3_progress_handler(database_.connection_.get(), 0, nullptr, nullptr);
}

int TimeLimit::isOver(void *limit) {
  return std::chrono::steady_clock::now() >= static_cast<TimeLimit *>(limit)->end_ ? 1 : 0;
}

Transaction::Transaction(Database *database) : database_(database) {}

Transaction::Transaction(Transaction &&other) noexcept
    : database_(std::exchange(other.database_, nullptr)) {}

std::expected<Transaction, DatabaseError> Transaction::begin(Database &database) {
  // The right to write is taken at once, so that it is not lacking in the middle.
  if (auto begun = database.execute("BEGIN IMMEDIATE"); !begun) {
    return std::unexpected(begun.error());
  }
  return Transaction(&database);
}

Transaction::~Transaction() {
  if (database_ != nullptr) {
    (void)database_->execute("ROLLBACK");
  }
}

std::expected<void, DatabaseError> Transaction::commit() {
  auto committed = database_->execute("COMMIT");
  if (committed) {
    database_ = nullptr;
  }
  return committed;
}

}  // namespace korvo::library
