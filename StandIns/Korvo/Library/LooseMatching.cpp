#include "LooseMatching.h"

#include "BibliographicRecord.h"
#include "CitationName.h"
#include "FoldedText.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>

namespace korvo::library {
namespace {

// What only stands in a citation's markers: such a text is none that a work is named by.
constexpr std::string_view markers = "#@\\{}";

bool hasYear(const WrittenName &name) { return !name.year.empty(); }

std::string_view withoutQuotes(std::string_view text) {
  const std::size_t first = text.find_first_not_of("\"'");
  const std::size_t last = text.find_last_not_of("\"'");
  return first == std::string_view::npos ? std::string_view()
                                         : text.substr(first, last - first + 1);
}

// Adds the rows whose record, in the second column, is meant.
std::expected<void, DatabaseError> addMeant(Statement &statement, const WrittenName &name,
                                            std::vector<ReferenceRow> &rows) {
  std::expected<bool, DatabaseError> row = statement.step();
  for (; row && *row; row = statement.step()) {
    const auto record = readBibliographicRecord(statement.text(1));
    if (record && mayMean(name, *record)) {
      rows.push_back(statement.integer(0));
    }
  }
  statement.reset();
  return row ? std::expected<void, DatabaseError>() : std::unexpected(row.error());
}

std::vector<ReferenceRow> eachOnce(std::vector<ReferenceRow> rows) {
  std::ranges::sort(rows);
  rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
  return rows;
}

}  // namespace

LooseMatching::LooseMatching(Statement named, Statement undated, Statement titled)
    : named_(std::move(named)), undated_(std::move(undated)), titled_(std::move(titled)) {}

std::expected<LooseMatching, DatabaseError> LooseMatching::prepare(Database &database) {
  auto named =
      database.prepare("SELECT row, csl FROM citation_name JOIN record USING (row) WHERE name = ?");
  if (!named) {
    return std::unexpected(named.error());
  }
  // The family name stands first in the list's order, before a comma and the given names, or before
  // a semicolon and the next author.
  auto undated = database.prepare(
      "SELECT row, csl FROM reference JOIN record USING (row) WHERE year = '' AND "
      "(sort_authors = ?1 OR (sort_authors >= ?1 || ',' AND sort_authors < ?1 || '-') OR "
      "(sort_authors >= ?1 || ';' AND sort_authors < ?1 || '<'))");
  if (!undated) {
    return std::unexpected(undated.error());
  }
  // "Title" also stands for "Title: Subtitle".
  auto titled = database.prepare(
      "SELECT row, year FROM reference WHERE sort_authors = '' AND "
      "(sort_title = ?1 OR (sort_title >= ?1 || ':' AND sort_title < ?1 || ';'))");
  if (!titled) {
    return std::unexpected(titled.error());
  }
  return LooseMatching(std::move(*named), std::move(*undated), std::move(*titled));
}

std::expected<std::vector<ReferenceRow>, DatabaseError> LooseMatching::matching(
    std::string_view visibleText) {
  if (visibleText.find_first_of(markers) != std::string_view::npos) {
    return std::vector<ReferenceRow>();
  }
  const auto name = readWrittenName(visibleText);
  if (name) {
    auto rows = named(*name);
    if (!rows || !rows->empty()) {
      return rows;
    }
  }
  return titled(foldedText(visibleText));
}

std::expected<std::vector<ReferenceRow>, DatabaseError> LooseMatching::named(
    const WrittenName &name) {
  std::vector<ReferenceRow> rows;
  for (const std::string &family : possibleFamilyNames(name)) {
    Statement &statement = hasYear(name) ? named_ : undated_;
    const std::string key =
        hasYear(name) ? canonicalCitationName(family + " " + name.year) : family;
    statement.bind(0, key);
    if (auto added = addMeant(statement, name, rows); !added) {
      return std::unexpected(added.error());
    }
  }
  return eachOnce(std::move(rows));
}

// With and without what may be its year: "Blade Runner 2049", "Beowulf 1815".
std::expected<std::vector<ReferenceRow>, DatabaseError> LooseMatching::titled(
    std::string_view foldedTitle) {
  const auto name = readWrittenName(foldedTitle);
  std::vector<ReferenceRow> rows;
  const auto addTitled = [&](std::string_view title,
                             bool wantsYear) -> std::expected<void, DatabaseError> {
    title = withoutQuotes(title);
    if (title.empty()) {
      return {};
    }
    titled_.bind(0, title);
    std::expected<bool, DatabaseError> row = titled_.step();
    for (; row && *row; row = titled_.step()) {
      if (!wantsYear || titled_.text(1) == name->year) {
        rows.push_back(titled_.integer(0));
      }
    }
    titled_.reset();
    return row ? std::expected<void, DatabaseError>() : std::unexpected(row.error());
  };
  if (auto added = addTitled(foldedTitle, false); !added) {
    return std::unexpected(added.error());
  }
  if (rows.empty() && name) {
    if (auto added = addTitled(name->textBeforeYear, true); !added) {
      return std::unexpected(added.error());
    }
  }
  return eachOnce(std::move(rows));
}

}  // namespace korvo::library
