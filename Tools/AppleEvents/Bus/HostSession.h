// The word processor's side, played to a running host: sends requests, and keeps all that comes
// back.
#pragma once

#include <Formats/FourCharacterCode.h>
#include <Platform/AppleEventsProcess.h>
#include <Tools/AppleEvents/Commands/Failure.h>
#include <Tools/AppleEvents/Recordings/Recording.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <expected>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <utility>
#include <vector>

namespace appleevents {

class HostSession {
 public:
  using Clock = std::chrono::steady_clock;

  static bool isHostRunning();

  // Declares the word processor's signature, once the host runs. Events of these classes and IDs
  // are received, besides those of the conversation.
  static std::expected<std::unique_ptr<HostSession>, Failure> connect(const Recording &recording,
                                                                      Clock::time_point deadline);
  ~HostSession();
  HostSession(const HostSession &) = delete;
  HostSession &operator=(const HostSession &) = delete;
  HostSession(HostSession &&) = delete;
  HostSession &operator=(HostSession &&) = delete;

  // Sends an event of a recording to the host.
  void send(const RecordedMessage &event);

  // What has come and was not taken yet, in order. Of a reply the number is that of its event; an
  // error is a reply, too, with the error's number as its only parameter.
  std::vector<RecordedMessage> &arrived() { return arrived_; }
  bool hasHostEnded() const { return hasHostEnded_; }

  // Handles what arrives until the condition holds, the host has ended or the time is over.
  void runUntil(const std::function<bool()> &condition, Clock::time_point deadline);

 private:
  using Codes = std::pair<formats::FourCharacterCode, formats::FourCharacterCode>;

  HostSession();
  void receive(const Codes &codes);

  platform::ProcessWatch watch_;
  bool isReceiving_ = false;
  bool hasHostEnded_ = false;
  std::set<Codes> received_;
  // The numbers of the events sent, by their return IDs, which are shorter.
  std::map<std::int16_t, std::size_t> sent_;
  std::vector<RecordedMessage> arrived_;
};

}  // namespace appleevents
