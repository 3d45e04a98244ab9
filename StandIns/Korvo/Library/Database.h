// SQLite behind values that clean up after themselves and report errors in words.
#pragma once

#include <chrono>
#include <cstdint>
#include <expected>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

struct sqlite3;
struct sqlite3_stmt;

namespace korvo::library {

// One line in words, without the file's name.
using DatabaseError = std::string;

// A prepared statement. Parameters and columns are counted from 0.
class Statement {
 public:
  void bind(int parameter, std::string_view text);
  void bind(int parameter, std::int64_t number);

  // Whether there is a (further) row.
  std::expected<bool, DatabaseError> step();
  // Carries out a statement that yields no rows, and makes it ready for the next time.
  std::expected<void, DatabaseError> run();
  // Ready for new parameters and another round. Cheap.
  void reset();

  // Of the current row. The text is valid until the next step or reset.
  std::string_view text(int column) const;
  std::int64_t integer(int column) const;

 private:
  friend class Database;
  explicit Statement(sqlite3_stmt *statement);

  struct Finalize {
    void operator()(sqlite3_stmt *statement) const;
  };
  std::unique_ptr<sqlite3_stmt, Finalize> statement_;
};

class Database {
 public:
  // The file must exist; it is not touched by opening.
  static std::expected<Database, DatabaseError> openExisting(const std::filesystem::path &file);
  // Makes the file where there is none.
  static std::expected<Database, DatabaseError> openOrCreate(const std::filesystem::path &file);
  // In memory; gone with the object.
  static std::expected<Database, DatabaseError> temporary();

  // One statement or several, without parameters or rows.
  std::expected<void, DatabaseError> execute(const char *statements);
  std::expected<Statement, DatabaseError> prepare(std::string_view statement);
  // The one number that a query yields; 0 when it yields no row.
  std::expected<std::int64_t, DatabaseError> number(std::string_view query);
  // Rows written through this connection so far, also those whose writing was undone.
  std::int64_t changes() const;
  // Of the row inserted last.
  std::int64_t lastInsertedRow() const;

 private:
  friend class TimeLimit;
  explicit Database(sqlite3 *connection);
  static std::expected<Database, DatabaseError> open(const char *file, int flags);

  struct Close {
    void operator()(sqlite3 *connection) const;
  };
  std::unique_ptr<sqlite3, Close> connection_;
};

// While it lives, statements of the connection end with an error once the time is over.
class TimeLimit {
 public:
  TimeLimit(Database &database, std::chrono::steady_clock::duration time);
  ~TimeLimit();
  TimeLimit(const TimeLimit &) = delete;
  TimeLimit &operator=(const TimeLimit &) = delete;

 private:
  static int isOver(void *limit);

  Database &database_;
  std::chrono::steady_clock::time_point end_;
};

// All or nothing: what happens between begin and commit is undone when the object goes
// away uncommitted.
class Transaction {
 public:
  static std::expected<Transaction, DatabaseError> begin(Database &database);
  Transaction(Transaction &&other) noexcept;
  Transaction &operator=(Transaction &&) = delete;
  ~Transaction();

  std::expected<void, DatabaseError> commit();

 private:
  explicit Transaction(Database *database);
  Database *database_;  // null when there is nothing to undo
};

}  // namespace korvo::library
