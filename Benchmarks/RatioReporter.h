// Collects the times of a run of Google Benchmark and prints them as ratios: on a machine that
// does other things as well, a time says little, and the ratio of two times out of one run says
// much more.
#pragma once

#include <benchmark/benchmark.h>

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace benchmarks {

// What is compared with what, by the benchmarks' names, and the most that the ratio should be.
struct Comparison {
  std::string measured;
  std::string baseline;
  double aim;
};

class RatioReporter : public benchmark::BenchmarkReporter {
 public:
  bool ReportContext(const Context &context) override;
  void ReportRuns(const std::vector<Run> &runs) override;

  void printTable(const std::vector<Comparison> &comparisons) const;
  void printJSON(const std::vector<Comparison> &comparisons) const;

 private:
  // The median of the processor time of all repetitions; nothing if it was filtered out.
  std::optional<double> milliseconds(const std::string &name) const;

  std::map<std::string, std::vector<double>> milliseconds_;
};

}  // namespace benchmarks
