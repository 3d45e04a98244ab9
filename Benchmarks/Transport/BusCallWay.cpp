#include "Partner.h"
#include "Way.h"

#include <Platform/Bus/BusHandles.h>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string>
#include <utility>

namespace benchmarks {
namespace {

using platform::adoptMessage;
using platform::Connection;
using platform::Message;

constexpr char path[] = "/org/korvo/Benchmark";
constexpr char interface[] = "org.korvo.Benchmark1";
constexpr std::size_t largestBusArray = 60 * 1'048'576;
constexpr int allSeals = F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_WRITE | F_SEAL_SEAL;

int sumBytes(sd_bus_message *message, void *, sd_bus_error *) {
  const void *bytes = nullptr;
  std::size_t size = 0;
  if (sd_bus_message_read_array(message, 'y', &bytes, &size) < 0) {
    giveUp("A call's bytes could not be read");
  }
  return sd_bus_reply_method_return(message, "t",
                                    sumOfWords({static_cast<const std::byte *>(bytes), size}));
}

int sumFile(sd_bus_message *message, void *, sd_bus_error *) {
  int file = -1;
  struct stat status{};
  if (sd_bus_message_read_basic(message, 'h', &file) < 0 || fstat(file, &status) != 0 ||
      (fcntl(file, F_GET_SEALS) & allSeals) != allSeals) {
    giveUp("A call's file could not be read");
  }
  const auto size = static_cast<std::size_t>(status.st_size);
  void *address = mmap(nullptr, size, PROT_READ, MAP_PRIVATE, file, 0);
  if (address == MAP_FAILED) {
    giveUp("A call's file could not be mapped");
  }
  const std::uint64_t sum = sumOfWords({static_cast<const std::byte *>(address), size});
  munmap(address, size);
  return sd_bus_reply_method_return(message, "t", sum);
}

const sd_bus_vtable methods[] = {
    SD_BUS_VTABLE_START(0),
    SD_BUS_METHOD("SumBytes", "ay", "t", sumBytes, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_METHOD("SumFile", "h", "t", sumFile, SD_BUS_VTABLE_UNPRIVILEGED), SD_BUS_VTABLE_END};

Connection openBus() {
  sd_bus *bus = nullptr;
  if (sd_bus_open_user(&bus) < 0) {
    giveUp("There is no session bus; dbus-run-session gives one to a command");
  }
  return Connection(bus);
}

class BusCallWay : public Way {
 public:
  explicit BusCallWay(std::string name)
      : name_(std::move(name)),
        receiver_([this](const std::function<void()> &ready) { serve(ready); }),
        bus_(openBus()) {}

 protected:
  Message newCall(const char *method) {
    sd_bus_message *message = nullptr;
    if (sd_bus_message_new_method_call(bus_.get(), &message, name_.c_str(), path, interface,
                                       method) < 0) {
      giveUp("A call could not be made");
    }
    return adoptMessage(message);
  }

  std::uint64_t answerTo(const Message &call) {
    sd_bus_message *answered = nullptr;
    std::uint64_t sum = 0;
    if (sd_bus_call(bus_.get(), call.get(), UINT64_MAX, nullptr, &answered) < 0) {
      giveUp("A bare call was not answered");
    }
    const Message reply = adoptMessage(answered);
    if (sd_bus_message_read_basic(answered, 't', &sum) < 0) {
      giveUp("A bare call's answer could not be read");
    }
    return sum;
  }

 private:
  void serve(const std::function<void()> &ready) const {
    const Connection bus = openBus();
    if (sd_bus_add_object_vtable(bus.get(), nullptr, path, interface, methods, nullptr) < 0 ||
        sd_bus_request_name(bus.get(), name_.c_str(), 0) < 0) {
      return;
    }
    ready();
    int result = 0;
    while (result >= 0) {
      result = sd_bus_process(bus.get(), nullptr);
      if (result == 0) {
        result = sd_bus_wait(bus.get(), UINT64_MAX);
      }
    }
  }

  std::string name_;
  Partner receiver_;
  Connection bus_;
};

class BusBytesWay final : public BusCallWay {
 public:
  BusBytesWay() : BusCallWay("org.korvo.Benchmark.Bytes") {}

  bool carries(std::size_t size) const override { return size <= largestBusArray; }

  std::uint64_t exchange(std::span<const std::byte> payload) override {
    const Message call = newCall("SumBytes");
    if (sd_bus_message_append_array(call.get(), 'y', payload.data(), payload.size()) < 0) {
      giveUp("A call's bytes could not be appended");
    }
    return answerTo(call);
  }
};

class BusFileWay final : public BusCallWay {
 public:
  BusFileWay() : BusCallWay("org.korvo.Benchmark.File") {}

  bool carries(std::size_t) const override { return true; }

  std::uint64_t exchange(std::span<const std::byte> payload) override {
    const int file = memfd_create("benchmark", MFD_CLOEXEC | MFD_ALLOW_SEALING);
    const auto size = static_cast<ssize_t>(payload.size());
    if (file < 0 || write(file, payload.data(), payload.size()) != size ||
        fcntl(file, F_ADD_SEALS, allSeals) != 0) {
      giveUp("A memory file could not be made");
    }
    const Message call = newCall("SumFile");
    if (sd_bus_message_append_basic(call.get(), 'h', &file) < 0) {
      giveUp("A call's file could not be appended");
    }
    close(file);
    return answerTo(call);
  }
};

}  // namespace

std::unique_ptr<Way> makeBusBytesWay() { return std::make_unique<BusBytesWay>(); }
std::unique_ptr<Way> makeBusFileWay() { return std::make_unique<BusFileWay>(); }

}  // namespace benchmarks
