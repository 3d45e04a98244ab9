// What a measuring program found, in the shape that Scripts/benchmark keeps and shows
// (Benchmarks/README.md explains each field).
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace benchmarks {

// The middle of what was measured several times, and how far its middle half is spread.
struct Sample {
  double median = 0;
  double spread = 0;
  int repetitions = 0;
};

// Of at least one value.
Sample sampleOf(std::vector<double> values);

enum class AimIs { most, least };

struct Row {
  std::string plot = {};  // empty: in the table only
  std::string name = {};
  std::optional<double> size = {};
  std::string sizeUnit = {};
  Sample sample = {};
  std::string unit = {};
  std::string beside = {};  // name of the row of the same size that it is compared with; or empty
  std::optional<double> aim = {};
  AimIs aimIs = AimIs::most;
};

class Report {
 public:
  // The group is the name of its file; the title is for readers.
  Report(std::string group, std::string title)
      : group_(std::move(group)), title_(std::move(title)) {}

  void add(Row row) { rows_.push_back(std::move(row)); }

  // To standard output. Ratios are computed here, from the medians of the rows.
  void printJSON() const;
  void printTable() const;

 private:
  std::optional<double> ratio(const Row &row) const;

  std::string group_;
  std::string title_;
  std::vector<Row> rows_;
};

// What every measuring program is started with.
struct Options {
  bool asJSON = false;
  bool quick = false;
};

// Takes --json and --quick out of the arguments; what is left is the program's own.
Options takeOptions(int &count, char **arguments);

}  // namespace benchmarks
