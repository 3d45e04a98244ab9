#include "LooseMatching.h"

#include "BibliographicRecord.h"
#include "CitationName.h"
#include "FoldedText.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <numeric>
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

// Whether a letter or two were left out, added, changed or exchanged.
bool isNearly(std::string_view one, std::string_view other) {
  constexpr std::size_t longestName = 40;
  const std::size_t allowed = one.size() < 5 ? 1 : 2;
  if (one.size() > longestName || other.size() > longestName ||
      one.size() > other.size() + allowed || other.size() > one.size() + allowed) {
    return false;
  }
  std::vector<std::size_t> above(other.size() + 1);
  std::iota(above.begin(), above.end(), std::size_t{0});
  for (std::size_t row = 0; row < one.size(); ++row) {
    std::vector<std::size_t> changes = {row + 1};
    for (std::size_t column = 0; column < other.size(); ++column) {
      changes.push_back(std::min({changes.back() + 1, above[column + 1] + 1,
                                  above[column] + (one[row] == other[column] ? 0U : 1U)}));
    }
    above = std::move(changes);
  }
  return above.back() <= allowed;
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

LooseMatching::LooseMatching(Statement named, Statement undated, Statement titled,
                             Statement ofAuthor, Statement ofYear)
    : named_(std::move(named)),
      undated_(std::move(undated)),
      titled_(std::move(titled)),
      ofAuthor_(std::move(ofAuthor)),
      ofYear_(std::move(ofYear)) {}

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
  auto ofAuthor = database.prepare(
      "SELECT row FROM reference WHERE "
      "sort_authors = ?1 OR (sort_authors >= ?1 || ',' AND sort_authors < ?1 || '-') OR "
      "(sort_authors >= ?1 || ';' AND sort_authors < ?1 || '<') ORDER BY sort_year LIMIT 3");
  if (!ofAuthor) {
    return std::unexpected(ofAuthor.error());
  }
  auto ofYear = database.prepare("SELECT row, sort_authors FROM reference WHERE sort_year = ?");
  if (!ofYear) {
    return std::unexpected(ofYear.error());
  }
  return LooseMatching(std::move(*named), std::move(*undated), std::move(*titled),
                       std::move(*ofAuthor), std::move(*ofYear));
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

std::expected<std::vector<ReferenceRow>, DatabaseError> LooseMatching::similar(
    std::string_view visibleText) {
  constexpr std::size_t most = 3;
  std::vector<ReferenceRow> rows;
  const auto name = readWrittenName(visibleText);
  const std::vector<std::string> families =
      name ? possibleFamilyNames(*name) : std::vector<std::string>{foldedText(visibleText)};
  for (const std::string &family : families) {
    ofAuthor_.bind(0, family);
    std::expected<bool, DatabaseError> row = ofAuthor_.step();
    for (; row && *row && rows.size() < most; row = ofAuthor_.step()) {
      rows.push_back(ofAuthor_.integer(0));
    }
    ofAuthor_.reset();
    if (!row) {
      return std::unexpected(row.error());
    }
  }
  if (!rows.empty() || !name || !hasYear(*name) || families.empty()) {
    return rows;
  }
  ofYear_.bind(0, static_cast<std::int64_t>(std::stoll(name->year)));
  std::expected<bool, DatabaseError> row = ofYear_.step();
  for (; row && *row && rows.size() < most; row = ofYear_.step()) {
    const std::string_view authors = ofYear_.text(1);
    if (isNearly(families.front(), authors.substr(0, authors.find_first_of(",;")))) {
      rows.push_back(ofYear_.integer(0));
    }
  }
  ofYear_.reset();
  return row ? std::expected<std::vector<ReferenceRow>, DatabaseError>(std::move(rows))
             : std::unexpected(row.error());
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
