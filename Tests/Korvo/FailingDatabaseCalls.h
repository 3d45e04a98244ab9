// Makes the system calls fail that SQLite keeps a library with, one after the other, or ends the
// process at one of them.
//
// SQLite lets its calls be replaced; fsync, which it does not, is defined anew by this program.
// While a DatabaseFault lives, calls are counted from 0. One thread, one fault at a time. A program
// with this in it forces nothing to the disk: a process that ends takes nothing along that it has
// written.
#pragma once

#include <cstddef>
#include <limits>
#include <string>
#include <vector>

struct DatabaseFaultPlan {
  static constexpr std::size_t never = std::numeric_limits<std::size_t>::max();

  std::size_t firstFailure = never;  // number of the first call that fails
  std::size_t failures = 1;          // how many fail from there on
  int error = 0;                     // what errno says of them
  // Counts the calls of these names alone; empty: all.
  std::vector<std::string> only = {};
  bool killsProcess = false;  // in place of failing
};

class DatabaseFault {
 public:
  explicit DatabaseFault(const DatabaseFaultPlan &plan);
  ~DatabaseFault();
  DatabaseFault(const DatabaseFault &) = delete;
  DatabaseFault &operator=(const DatabaseFault &) = delete;

  std::size_t calls() const { return calls_; }
  // Whether a call was made to fail, and the name of the first one.
  bool hasStruck() const { return !struck_.empty(); }
  const std::string &struckCall() const { return struck_; }

  // For the replaced calls: counts the call; whether it must fail, with errno set.
  bool strikes(const char *call);

 private:
  DatabaseFaultPlan plan_;
  std::size_t calls_ = 0;
  std::string struck_;
};
