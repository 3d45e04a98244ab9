// The reference manager, as the word processor sees it: requests go out as Apple Events, answers
// arrive as events of their own, or in the reply.
//
// An answer is waited for in the run loop, together with everything else that may end the
// waiting: the host cancels, the host ends, the time is over.
#pragma once

#include <Formats/FourCharacterCode.h>
#include <StandIns/Mellel/Console/Failure.h>
#include <StandIns/Mellel/Console/Progress.h>

#include <chrono>
#include <cstdint>
#include <expected>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace mellel::conversation {

struct Request {
  formats::FourCharacterCode eventID = 0;
  // Without one the event has no direct object.
  std::optional<std::string> payload;
  // What is told while it takes long.
  std::string step;
  // Whether a person may be asked on the host's side, so that there is no end to wait for.
  bool mayAskPerson = false;
  // Of the document that the request is about. What comes for another one is a late answer to an
  // earlier process, and passed over.
  std::optional<std::uint32_t> documentID = std::nullopt;
  // What is told once it has taken a second: what the host may be waiting for.
  std::string hint = {};
};

struct AnswerKind {
  formats::FourCharacterCode eventClass = 0;
  formats::FourCharacterCode eventID = 0;

  bool operator==(const AnswerKind &) const = default;
};

class Host {
 public:
  // Declares this process's signature, so that answers find it. Only one process can have it:
  // whoever needs no answer besides a reply may go on without.
  enum class Receiving { required, ifPossible };
  static std::expected<std::unique_ptr<Host>, console::Failure> connect(
      Receiving receiving, std::optional<std::chrono::seconds> timeout,
      console::Progress &progress);
  ~Host();
  Host(const Host &) = delete;
  Host &operator=(const Host &) = delete;
  Host(Host &&) = delete;
  Host &operator=(Host &&) = delete;

  // The payload of the first answer that belongs to the request.
  std::expected<std::string, console::Failure> ask(const Request &request,
                                                   const AnswerKind &answer);

  // For a request that the host may settle without an answer, bringing this process to the
  // front: nothing then.
  std::expected<std::optional<std::string>, console::Failure> askIfAny(const Request &request,
                                                                       const AnswerKind &answer);

  // Waits until the host has handled the request. The direct object of the reply, if it has one.
  std::expected<std::optional<std::string>, console::Failure> askForReply(const Request &request);

 private:
  class State;
  explicit Host(std::unique_ptr<State> state);

  std::unique_ptr<State> state_;
};

}  // namespace mellel::conversation
