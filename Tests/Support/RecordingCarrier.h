// A carrier for tests: it sends nothing and remembers everything.
//
//   test_support::RecordingCarrier carrier;      // in place from here to the end of the scope
//   carrier.addProcess(signature);
//   ... code under test sends ...
//   EXPECT_EQ(RecordingCarrier::directObject(carrier.sent.at(0)), payload);
//   auto answer = carrier.deliver(eventClass, eventID, payload, true);
#pragma once

#include <Platform/Carrier.h>
#include <Platform/EventDispatch.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace test_support {

class RecordingCarrier final : public platform::Carrier {
 public:
  RecordingCarrier() : previous_(platform::setCarrier(this)) {}
  ~RecordingCarrier() override { platform::setCarrier(previous_); }
  RecordingCarrier(const RecordingCarrier &) = delete;
  RecordingCarrier &operator=(const RecordingCarrier &) = delete;

  // Every event that was sent, also those that failed.
  std::vector<platform::OutgoingEvent> sent;
  // Every process that was asked to come to the front, also where that failed.
  std::vector<ProcessSerialNumber> activated;
  // What there is to enumerate.
  std::vector<platform::Process> running;

  // What the next sends return: an error, or the parameters of the reply.
  std::expected<platform::Parameters, OSStatus> sendResult;
  // What the next enumerations return in place of `running`, unless noErr.
  OSStatus enumerationStatus = noErr;
  // Those that are enumerated and have ended before their information is read.
  std::vector<ProcessSerialNumber> ended;
  // What the next activations return.
  OSStatus activationStatus = noErr;

  // Called at the moment of each send and activation, for tests of the order of things.
  std::function<void(const platform::OutgoingEvent &)> onSend;
  std::function<void(ProcessSerialNumber)> onActivate;

  // Adds a running process, under a serial number that is returned.
  ProcessSerialNumber addProcess(OSType signature) {
    const ProcessSerialNumber number{7, static_cast<UInt32>(running.size()) + 100};
    running.push_back({number, signature});
    return number;
  }

  struct Answer {
    // noErr, or the error that the sender would get.
    OSStatus status = noErr;
    // Those of the reply event.
    platform::Parameters parameters;
    // The bytes of the reply's direct object, if it has one.
    std::optional<std::string> directObject() const {
      return bytesUnder(parameters, keyDirectObject);
    }
    // What the reply says of how the handler failed, if it says so.
    std::optional<SInt32> errorNumber() const {
      const auto bytes = bytesUnder(parameters, keyErrorNumber);
      SInt32 number = 0;
      if (!bytes || bytes->size() != sizeof number) {
        return std::nullopt;
      }
      std::memcpy(&number, bytes->data(), sizeof number);
      return number;
    }
  };

  // Hands an event to its handler at once, as if it had arrived. Without a payload it has no
  // direct object.
  Answer deliver(AEEventClass eventClass, AEEventID eventID,
                 std::optional<std::string_view> payload, bool wantsReply = false,
                 DescType payloadType = typeChar) {
    platform::IncomingEvent event{eventClass, eventID, {}, wantsReply};
    if (payload) {
      auto data = platform::SharedBytes::copyOf(std::as_bytes(std::span(*payload)));
      if (!data) {
        return {data.error(), {}};
      }
      event.parameters.push_back({keyDirectObject, payloadType, *std::move(data)});
    }
    return deliver(event);
  }

  Answer deliver(const platform::IncomingEvent &event) {
    auto reply = platform::dispatchAppleEvent(event);
    return reply ? Answer{noErr, *std::move(reply)} : Answer{reply.error(), {}};
  }

  // The bytes of the event's direct object, if it has one.
  static std::optional<std::string> directObject(const platform::OutgoingEvent &event) {
    return bytesUnder(event.parameters, keyDirectObject);
  }

  static std::optional<std::string> bytesUnder(const platform::Parameters &parameters,
                                               AEKeyword keyword) {
    const platform::Parameter *parameter = platform::findParameter(parameters, keyword);
    if (parameter == nullptr) {
      return std::nullopt;
    }
    const auto bytes = parameter->data.view();
    return std::string(reinterpret_cast<const char *>(bytes.data()), bytes.size());
  }

  std::expected<platform::Parameters, OSStatus> send(
      const platform::OutgoingEvent &event) override {
    sent.push_back(event);
    if (onSend) {
      onSend(event);
    }
    return sendResult;
  }

  std::expected<platform::Process, OSStatus> processBehind(
      std::optional<ProcessSerialNumber> previous) override {
    if (enumerationStatus != noErr) {
      return std::unexpected(enumerationStatus);
    }
    bool isNext = !previous;
    for (const platform::Process &process : running) {
      if (isNext) {
        return process;
      }
      isNext = platform::Process{*previous, process.signature} == process;
    }
    return std::unexpected(OSStatus{procNotFound});
  }

  std::expected<platform::Process, OSStatus> process(ProcessSerialNumber serialNumber) override {
    const auto isIt = [&](const ProcessSerialNumber &other) {
      return platform::Process{serialNumber, 0} == platform::Process{other, 0};
    };
    for (const platform::Process &process : running) {
      if (isIt(process.serialNumber) && std::ranges::none_of(ended, isIt)) {
        return process;
      }
    }
    return std::unexpected(OSStatus{procNotFound});
  }

  OSStatus activate(ProcessSerialNumber serialNumber) override {
    activated.push_back(serialNumber);
    if (onActivate) {
      onActivate(serialNumber);
    }
    return activationStatus;
  }

 private:
  platform::Carrier *previous_;
};

}  // namespace test_support
