// Looks on at the session bus: every Apple Event between any processes, their replies and
// activations, in the order in which the bus carries them. Nobody notices.
#pragma once

#include <Platform/Bus/BusHandles.h>
#include <Tools/AppleEvents/Recordings/Recording.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <expected>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace appleevents {

class BusMonitor {
 public:
  using Receiver = std::function<void(RecordedMessage)>;
  // Of a message that cannot be read: a line.
  using Complaint = std::function<void(const std::string &)>;

  // What comes from now on is seen. The error is one line: no session bus, or one that lets nobody
  // look on.
  static std::expected<std::unique_ptr<BusMonitor>, std::string> open();

  // Of the socket, to wait for.
  int descriptor() const;
  // Hands on all that has arrived. False when the bus has gone.
  bool process(const Receiver &record, const Complaint &complain);
  // Asks the bus a question whose answer passes by here as everything does: when it has, all that
  // was sent before it has been seen. False when the bus has gone.
  bool askForEnd();
  bool hasSeenEnd() const { return hasSeenEnd_; }

 private:
  // A call that waits for its reply: its sender's own name on the bus, and its number there.
  using CallID = std::pair<std::string, std::uint64_t>;

  BusMonitor() = default;
  void learnOwners();
  void handle(const platform::Message &message, const Receiver &record, const Complaint &complain);
  // Nothing for what is no event.
  std::optional<RecordedMessage> messageOf(const platform::Message &message,
                                           RecordedMessage::Kind kind, const Complaint &complain);
  bool beginEvent(sd_bus_message *message, RecordedMessage &event);
  void ownerChanged(sd_bus_message *message);
  formats::FourCharacterCode signatureOf(const char *name) const;

  // Asks questions; a monitor may not.
  platform::Connection bus_;
  platform::Connection monitor_;
  std::chrono::steady_clock::time_point beginning_ = std::chrono::steady_clock::now();
  // By the processes' own names on the bus, of which none is given twice.
  std::map<std::string, formats::FourCharacterCode, std::less<>> signatures_;
  std::map<CallID, std::size_t> waiting_;  // the numbers of their events
  std::size_t events_ = 0;
  std::uint64_t lastQuestion_ = 0;
  bool hasSeenEnd_ = false;
};

}  // namespace appleevents
