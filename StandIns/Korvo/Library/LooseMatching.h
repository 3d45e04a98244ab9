// Looks up what the index of citation names does not find: names written out in full, works without
// a date, and works without an author by their titles. Only what already is in the index of names,
// or that of the list, is read; no look-up goes through all references that have authors.
#pragma once

#include "Database.h"
#include "Library.h"
#include "WrittenName.h"

#include <expected>
#include <string_view>
#include <vector>

namespace korvo::library {

class LooseMatching {
 public:
  static std::expected<LooseMatching, DatabaseError> prepare(Database &database);

  // What an author may have meant by a text that means nothing: the works of the first person it
  // names, or of one whose name is spelled nearly so, of that year. A few of them.
  std::expected<std::vector<ReferenceRow>, DatabaseError> similar(std::string_view visibleText);

  // In the order of the rows, each once.
  std::expected<std::vector<ReferenceRow>, DatabaseError> matching(std::string_view visibleText);

 private:
  LooseMatching(Statement named, Statement undated, Statement titled, Statement ofAuthor,
                Statement ofYear);

  std::expected<std::vector<ReferenceRow>, DatabaseError> named(const WrittenName &name);
  std::expected<std::vector<ReferenceRow>, DatabaseError> titled(std::string_view foldedTitle);

  Statement named_;
  Statement undated_;
  Statement titled_;
  Statement ofAuthor_;
  Statement ofYear_;
};

}  // namespace korvo::library
