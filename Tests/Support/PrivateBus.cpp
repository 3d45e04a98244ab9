#include "PrivateBus.h"

#include "Files.h"

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <vector>

namespace test_support {

PrivateBus::PrivateBus(const std::string &rule) {
  writeFile(configuration(),
            "<busconfig><include>/usr/share/dbus-1/session.conf</include>"
            "<policy context=\"mandatory\">" +
                rule + "</policy></busconfig>");
  setenv("DBUS_SESSION_BUS_ADDRESS", ("unix:path=" + socket().string()).c_str(), 1);
  start();
}

void PrivateBus::start() {
  daemon_ = std::make_unique<ChildProcess>(std::vector<std::string>{
      "dbus-daemon", "--config-file=" + configuration().string(), "--nofork", "--nopidfile",
      "--print-address", "--address=unix:path=" + socket().string()});
  if (daemon_->readLine().empty()) {
    throw std::runtime_error("the bus does not start");
  }
}

void PrivateBus::stop() {
  daemon_.reset();
  std::error_code ignored;
  std::filesystem::remove(socket(), ignored);
}

}  // namespace test_support
