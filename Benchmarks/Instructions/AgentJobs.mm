// The whole plug-in, between a prepared host and a carrier that sends nothing.

#include "Job.h"

#import <Conversation.h>

#include <memory>

namespace benchmarks {

namespace {

constexpr std::size_t citationCount = 1'024;

std::function<void()> answer(Kind kind) {
  // Kept to the end of the program, as a host keeps its pool.
  [[maybe_unused]] static NSAutoreleasePool *const pool = [[NSAutoreleasePool alloc] init];
  static PreparedHost *const host = startPlugin();
  require(host != nil, "start the plug-in");
  auto conversation = std::make_shared<Conversation>(host, kind, citationCount);
  return [conversation] { conversation->answerOnce(); };
}

Job jobOf(const char *name, Kind kind) {
  return {name, [kind] { return answer(kind); }};
}

}  // namespace

std::vector<Job> agentJobs() {
  return {jobOf("answer a final scan of 1,024 citations", Kind::finalScan),
          jobOf("answer a preliminary scan of 1,024 citations", Kind::preliminaryScan),
          jobOf("answer a live bibliography of 1,024 citations", Kind::liveBibliography)};
}

}  // namespace benchmarks
