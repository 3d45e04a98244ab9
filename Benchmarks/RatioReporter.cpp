#include "RatioReporter.h"

#include <algorithm>
#include <cstdio>

namespace benchmarks {

bool RatioReporter::ReportContext(const Context &) { return true; }

void RatioReporter::ReportRuns(const std::vector<Run> &runs) {
  for (const Run &run : runs) {
    if (run.run_type != Run::RT_Iteration) {
      continue;
    }
    if (run.error_occurred) {
      std::fprintf(stderr, "%s: %s\n", run.run_name.function_name.c_str(),
                   run.error_message.c_str());
      continue;
    }
    milliseconds_[run.run_name.function_name].push_back(run.cpu_accumulated_time /
                                                        static_cast<double>(run.iterations) * 1e3);
  }
}

std::optional<double> RatioReporter::milliseconds(const std::string &name) const {
  const auto found = milliseconds_.find(name);
  if (found == milliseconds_.end()) {
    return std::nullopt;
  }
  std::vector<double> times = found->second;
  const auto middle = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
  std::ranges::nth_element(times, middle);
  return *middle;
}

void RatioReporter::printTable(const std::vector<Comparison> &comparisons) const {
  std::printf("%-46s %9s  %-34s %9s %7s %7s\n", "measured", "ms", "beside", "ms", "ratio", "aim");
  for (const auto &[measured, baseline, aim] : comparisons) {
    const auto time = milliseconds(measured);
    const auto baselineTime = milliseconds(baseline);
    if (!time || !baselineTime) {
      continue;
    }
    const double ratio = *time / *baselineTime;
    std::printf("%-46s %9.2f  %-34s %9.2f %7.2f %7.1f%s\n", measured.c_str(), *time,
                baseline.c_str(), *baselineTime, ratio, aim, ratio > aim ? " missed" : "");
  }
}

// Names are the benchmarks' own and need no escape.
void RatioReporter::printJSON(const std::vector<Comparison> &comparisons) const {
  const char *separator = "[";
  for (const auto &[measured, baseline, aim] : comparisons) {
    const auto time = milliseconds(measured);
    const auto baselineTime = milliseconds(baseline);
    if (!time || !baselineTime) {
      continue;
    }
    std::printf(
        "%s\n  {\"measured\": \"%s\", \"milliseconds\": %.4f, \"baseline\": \"%s\", "
        "\"baselineMilliseconds\": %.4f, \"ratio\": %.4f, \"aim\": %.1f}",
        separator, measured.c_str(), *time, baseline.c_str(), *baselineTime, *time / *baselineTime,
        aim);
    separator = ",";
  }
  std::printf("%s\n]\n", *separator == '[' ? "[" : "");
}

}  // namespace benchmarks
