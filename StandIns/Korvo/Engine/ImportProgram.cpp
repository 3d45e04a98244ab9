// korvo-reader FILE MEBIBYTES SECONDS PARENT: reads a library file within these bounds, and tells
// what is in it on a descriptor that it was started with. Nobody but korvo starts it.
// korvo-reader --version: tells whether it is the one that belongs to a korvo.
#include "ImportExit.h"
#include "ImportPipe.h"
#include "LibraryImporter.h"

#include <StandIns/Terminal/Output.h>
#include <StandIns/Terminal/Version.h>

#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <string>
#include <string_view>
#include <thread>

namespace {

constexpr int wrongUsage = 2;

std::size_t residentBytes() {
  std::ifstream statistics("/proc/self/statm");
  std::size_t pages = 0;
  std::size_t resident = 0;
  statistics >> pages >> resident;
  return resident * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

// The JavaScript machine reserves far more addresses than it uses, so that no limit of the system's
// fits: what it uses is looked at instead, twenty times while a gigabyte is filled.
void endBeyond(std::size_t bytes) {
  using namespace std::chrono_literals;
  for (;;) {
    if (residentBytes() > bytes) {
      _exit(korvo::engine::importTookTooMuchMemory);
    }
    std::this_thread::sleep_for(10ms);
  }
}

// Whatever the script does, the kernel counts.
void endAfter(unsigned long seconds) {
  const rlimit limit{.rlim_cur = seconds, .rlim_max = seconds + 1};
  setrlimit(RLIMIT_CPU, &limit);
  // A crash is told by the parent, and its memory is of no use to a user.
  const rlimit none{.rlim_cur = 0, .rlim_max = 0};
  setrlimit(RLIMIT_CORE, &none);
}

}  // namespace

int main(int argc, char **argv) {
  if (argc == 2 && std::string_view(argv[1]) == "--version") {
    terminal::print(terminal::versionLine("korvo-reader"));
    return EXIT_SUCCESS;
  }
  if (argc != 5) {
    return wrongUsage;
  }
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  // The parent may have ended before that was asked for.
  if (std::to_string(getppid()) != argv[4]) {
    return EXIT_FAILURE;
  }
  endAfter(std::strtoul(argv[3], nullptr, 10));
  std::thread(endBeyond, std::strtoull(argv[2], nullptr, 10) * 1'048'576).detach();
  korvo::engine::ImportWriter writer(korvo::engine::importPipe);
  korvo::engine::LibraryImporter importer;
  const auto imported = importer.importFile(
      argv[1],
      [&](const std::filesystem::path &, std::string_view soFar) { writer.writeProgress(soFar); });
  const bool isTold = writer.write(imported);
  // The machine's own threads are not waited for.
  _exit(isTold ? EXIT_SUCCESS : EXIT_FAILURE);
}
