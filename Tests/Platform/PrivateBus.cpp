#include "PrivateBus.h"

#include <cstdlib>
#include <filesystem>

namespace platform_test {

PrivateBus::PrivateBus() {
  std::string pattern = std::filesystem::temp_directory_path() / "platform-test-XXXXXX";
  if (mkdtemp(pattern.data()) == nullptr) {
    std::abort();
  }
  directory_ = pattern;
  setenv("DBUS_SESSION_BUS_ADDRESS", ("unix:path=" + directory_ + "/bus").c_str(), 1);
  start();
}

PrivateBus::~PrivateBus() {
  stop();
  std::error_code ignored;
  std::filesystem::remove_all(directory_, ignored);
}

void PrivateBus::start() {
  daemon_ = std::make_unique<ChildProcess>(
      std::vector<std::string>{"dbus-daemon", "--session", "--nofork", "--nopidfile",
                               "--print-address", "--address=unix:path=" + directory_ + "/bus"});
  if (daemon_->readLine().empty()) {
    std::abort();
  }
}

void PrivateBus::stop() {
  daemon_.reset();
  std::error_code ignored;
  std::filesystem::remove(directory_ + "/bus", ignored);
}

}  // namespace platform_test
