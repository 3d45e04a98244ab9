#include "MemoryFigures.h"

#include <fstream>
#include <sstream>
#include <string>

namespace test_support {
namespace {

// The figure of a line such as "Rss:   1234 kB".
std::size_t figure(const std::string &path, const std::string &name) {
  std::ifstream file(path);
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with(name + ":")) {
      std::istringstream rest(line.substr(name.size() + 1));
      std::size_t kibibytes = 0;
      rest >> kibibytes;
      return kibibytes * 1024;
    }
  }
  return 0;
}

}  // namespace

MemoryFigures memoryOf(pid_t process) {
  const std::string folder = "/proc/" + std::to_string(process);
  return {figure(folder + "/smaps_rollup", "Rss"),
          figure(folder + "/smaps_rollup", "Private_Dirty"), figure(folder + "/status", "VmHWM")};
}

}  // namespace test_support
