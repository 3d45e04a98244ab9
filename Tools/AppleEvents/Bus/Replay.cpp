#include "Replay.h"

#include <Formats/EventTable.h>
#include <Tools/AppleEvents/Payloads/EventKinds.h>
#include <Tools/AppleEvents/Recordings/Comparison.h>

#include <ApplicationServices/ApplicationServices.h>

#include <algorithm>
#include <cstring>
#include <optional>
#include <span>
#include <utility>

namespace appleevents {

namespace {

using Kind = RecordedMessage::Kind;
using Messages = std::vector<const RecordedMessage *>;

// A request and all that followed it, up to the next one.
struct Step {
  const RecordedMessage *request = nullptr;
  Messages expected;
};

bool isReply(const RecordedMessage &message) {
  return message.kind == Kind::reply || message.kind == Kind::error;
}

// What a host said before it was asked anything is no answer.
std::vector<Step> stepsOf(const Recording &recording) {
  std::vector<Step> steps;
  for (const RecordedMessage &message : recording.messages) {
    if (message.kind == Kind::event && message.from != formats::korvoSignature) {
      steps.push_back({&message, {}});
    } else if (!steps.empty()) {
      steps.back().expected.push_back(&message);
    }
  }
  return steps;
}

bool isCounterpart(const RecordedMessage &recorded, const RecordedMessage &arrived) {
  if (isReply(recorded) || isReply(arrived)) {
    return isReply(recorded) && isReply(arrived) && recorded.number == arrived.number;
  }
  return recorded.kind == arrived.kind && recorded.eventClass == arrived.eventClass &&
         recorded.eventID == arrived.eventID;
}

bool isExpected(const RecordedMessage &arrived, const Messages &expected) {
  return std::ranges::any_of(
      expected, [&](const RecordedMessage *recorded) { return isCounterpart(*recorded, arrived); });
}

// The status in a reply that is nothing but an error.
std::optional<SInt32> statusOf(const RecordedMessage &reply) {
  SInt32 status = 0;
  if (reply.parameters.size() != 1 || reply.parameters[0].keyword != keyErrorNumber ||
      reply.parameters[0].bytes.size() != sizeof status) {
    return std::nullopt;
  }
  std::memcpy(&status, reply.parameters[0].bytes.data(), sizeof status);
  return status;
}

class Replayer {
 public:
  Replayer(const Recording &recording, HostSession &session, std::chrono::seconds timeout)
      : recording_(recording), session_(session), timeout_(timeout) {}

  std::vector<ReplayedRequest> replay() {
    std::vector<ReplayedRequest> replayed;
    const std::vector<Step> steps = stepsOf(recording_);
    for (std::size_t index = 0; index < steps.size() && !session_.hasHostEnded(); ++index) {
      if (index == 0) {
        session_.arrived().clear();
      }
      replayed.push_back(replay(steps[index], std::span(steps).subspan(index + 1)));
    }
    return replayed;
  }

 private:
  ReplayedRequest replay(const Step &step, std::span<const Step> later) {
    outcome_ = {step.request->number, nameOf(*step.request), {}, {}};
    session_.send(*step.request);
    Messages waiting = step.expected;
    session_.runUntil(
        [&] {
          takeAnswersTo(waiting);
          return waiting.empty();
        },
        HostSession::Clock::now() + timeout_);
    takeAnswersTo(waiting);
    for (const RecordedMessage *missing : waiting) {
      outcome_.differences.push_back(nameOf(*missing) + " did not come" +
                                     (session_.hasHostEnded() ? ": the host has ended" : ""));
    }
    if (later.empty()) {
      // What comes in vain has nobody to wait for it.
      constexpr std::chrono::milliseconds timeForStragglers{200};
      session_.runUntil([] { return false; }, HostSession::Clock::now() + timeForStragglers);
    }
    std::erase_if(session_.arrived(), [&](const RecordedMessage &arrived) {
      const bool isEarly = std::ranges::any_of(
          later, [&](const Step &each) { return isExpected(arrived, each.expected); });
      if (!isEarly) {
        addSurplus(arrived);
      }
      return !isEarly;
    });
    return std::move(outcome_);
  }

  void addSurplus(const RecordedMessage &arrived) {
    if (arrived.eventID == formats::answer::preferences) {
      outcome_.remarks.push_back("preferences came unasked, as from a plug-in that starts");
    } else {
      outcome_.differences.push_back(nameOf(arrived) + " came and was not recorded");
    }
  }

  // Takes what arrived out of the lists on both sides.
  void takeAnswersTo(Messages &waiting) {
    std::erase_if(waiting, [&](const RecordedMessage *recorded) {
      auto &all = session_.arrived();
      const auto arrived = std::ranges::find_if(
          all, [&](const RecordedMessage &message) { return isCounterpart(*recorded, message); });
      if (arrived == all.end()) {
        return false;
      }
      compareMessages(*recorded, *arrived);
      all.erase(arrived);
      return true;
    });
  }

  void compareMessages(const RecordedMessage &recorded, const RecordedMessage &arrived) {
    const std::string name = nameOf(recorded);
    if (recorded.kind == Kind::error) {
      const auto status = statusOf(arrived);
      if (status != recorded.status) {
        outcome_.differences.push_back(
            name + ": was the error " + std::to_string(recorded.status) +
            (status ? ", is the error " + std::to_string(*status) : ", is no error"));
      }
      return;
    }
    const RecordedMessage &event = isReply(recorded) ? recording_.event(recorded.number) : recorded;
    const auto kind = findEventKind(event.eventClass, event.eventID, isReply(recorded));
    const auto status = isReply(recorded) ? statusOf(arrived) : std::nullopt;
    if (status && recorded.parameters != arrived.parameters) {
      outcome_.differences.push_back(name + ": is the error " + std::to_string(*status));
      return;
    }
    const Comparison comparison = compare(kind, recorded.parameters, arrived.parameters);
    for (const std::string &difference : comparison.differences) {
      outcome_.differences.push_back(name + ": " + difference);
    }
    if (comparison.documents) {
      outcome_.remarks.push_back(name + ": document " +
                                 std::to_string(comparison.documents->second) + " instead of " +
                                 std::to_string(comparison.documents->first) + ", overlooked");
    }
  }

  std::string nameOf(const RecordedMessage &message) const {
    if (isReply(message)) {
      return "the reply to event " + std::to_string(message.number);
    }
    if (message.kind == Kind::activation) {
      return "the wish to bring the word processor to the front";
    }
    const auto kind = findEventKind(message.eventClass, message.eventID, false);
    return kind ? std::string(kind->name)
                : inQuotes(message.eventClass) + ' ' + inQuotes(message.eventID);
  }

  const Recording &recording_;
  HostSession &session_;
  std::chrono::seconds timeout_;
  ReplayedRequest outcome_;
};

}  // namespace

std::vector<ReplayedRequest> replay(const Recording &recording, HostSession &session,
                                    std::chrono::seconds timeout) {
  return Replayer(recording, session, timeout).replay();
}

}  // namespace appleevents
