// Events as they are put into messages of the bus and taken out again, without a bus.

#include "Job.h"

#include <Platform/Bus/ParameterCodec.h>

#include <sys/socket.h>

#include <memory>
#include <span>
#include <string>

namespace benchmarks {

namespace {

constexpr int events = 200;
constexpr std::size_t bytesOfAnEvent = 4'096;

// A connection that is never answered: enough to make messages.
std::shared_ptr<sd_bus> connection() {
  int sockets[2];
  sd_bus *bus = nullptr;
  require(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, sockets) == 0 &&
              sd_bus_new(&bus) >= 0 && sd_bus_set_fd(bus, sockets[0], sockets[0]) >= 0 &&
              sd_bus_start(bus) >= 0,
          "start a connection");
  return {bus, sd_bus_close_unref};
}

platform::Message emptyMessage(sd_bus *bus) {
  sd_bus_message *message = nullptr;
  require(sd_bus_message_new_method_call(bus, &message, "org.example.Counted", "/counted",
                                         "org.example.Counted", "Send") >= 0,
          "make a message");
  return platform::adoptMessage(message);
}

std::function<void()> thereAndBack() {
  const std::string payload(bytesOfAnEvent, 'x');
  const auto bytes = platform::SharedBytes::copyOf(std::as_bytes(std::span(payload)));
  require(bytes.has_value(), "copy a payload");
  const platform::Parameters parameters{{keyDirectObject, typeChar, *bytes}};
  return [parameters, bus = connection()] {
    for (int event = 0; event < events; ++event) {
      const platform::Message message = emptyMessage(bus.get());
      require(platform::appendParameters(message.get(), parameters).has_value() &&
                  sd_bus_message_seal(message.get(), 1, 0) >= 0 &&
                  sd_bus_message_rewind(message.get(), 1) >= 0,
              "put an event into a message");
      const auto read = platform::readParameters(message, bytesOfAnEvent);
      require(read && read->size() == 1 && read->front().data.size() == bytesOfAnEvent,
              "take an event out of a message");
    }
  };
}

}  // namespace

std::vector<Job> eventJobs() {
  return {{"put 200 events of 4 KiB into messages and take them out", thereAndBack}};
}

}  // namespace benchmarks
