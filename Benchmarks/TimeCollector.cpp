#include "TimeCollector.h"

#include <cstdio>

namespace benchmarks {

bool TimeCollector::ReportContext(const Context &) { return true; }

void TimeCollector::ReportRuns(const std::vector<Run> &runs) {
  for (const Run &run : runs) {
    if (run.run_type != Run::RT_Iteration) {
      continue;
    }
    if (run.error_occurred) {
      std::fprintf(stderr, "%s: %s\n", run.run_name.function_name.c_str(),
                   run.error_message.c_str());
      failed_ = true;
      continue;
    }
    milliseconds_[run.run_name.function_name].push_back(run.cpu_accumulated_time /
                                                        static_cast<double>(run.iterations) * 1e3);
  }
}

std::optional<Sample> TimeCollector::milliseconds(const std::string &name) const {
  const auto found = milliseconds_.find(name);
  return found == milliseconds_.end() ? std::nullopt : std::optional(sampleOf(found->second));
}

}  // namespace benchmarks
