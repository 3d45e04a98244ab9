// Collects the processor times of a run of Google Benchmark, by the benchmarks' names.
#pragma once

#include "Report.h"

#include <benchmark/benchmark.h>

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace benchmarks {

class TimeCollector : public benchmark::BenchmarkReporter {
 public:
  bool ReportContext(const Context &context) override;
  void ReportRuns(const std::vector<Run> &runs) override;

  // Milliseconds of processor time of one iteration; nothing if the benchmark was filtered out or
  // failed.
  std::optional<Sample> milliseconds(const std::string &name) const;
  // Whether a benchmark ended with an error.
  bool failed() const { return failed_; }

 private:
  std::map<std::string, std::vector<double>> milliseconds_;
  bool failed_ = false;
};

}  // namespace benchmarks
