#include "BusCommands.h"

namespace appleevents {

namespace {

std::unexpected<Failure> notHere(const char *command) {
  return std::unexpected(
      Failure{Status::unreachable,
              std::string(command) + " needs the message bus that carries Apple Events on Linux"});
}

}  // namespace

std::expected<Status, Failure> record(const RecordOptions &) { return notHere("record"); }

std::expected<Status, Failure> replay(const ReplayOptions &) { return notHere("replay"); }

}  // namespace appleevents
