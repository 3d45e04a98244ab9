#include "Host.h"

#include "Answers.h"
#include "LateEvents.h"
#include "RunLoop.h"

#include <Formats/EventTable.h>
#include <Platform/AppleEventsProcess.h>
#include <Platform/OwnedDescriptor.h>
#include <Platform/WithoutCocoa/EventHandlers.h>

#include <ApplicationServices/ApplicationServices.h>

#include <array>
#include <cstring>
#include <utility>

namespace mellel::conversation {

using console::Failure;
using console::Progress;
using console::Status;

namespace {

using platform::OwnedDescriptor;

constexpr AnswerKind cancelKind{formats::mellelSignature, formats::answer::cancel};

constexpr std::array<AnswerKind, 5> answerKinds = {
    {{formats::mellelSignature, formats::answer::preferences},
     cancelKind,
     {formats::mellelSignature, formats::answer::citationResolution},
     {formats::mellelSignature, formats::answer::finalScan},
     {formats::insertionEventClass, formats::answer::citation}}};

// A host that nobody has to answer to does not think longer than this.
constexpr std::chrono::seconds defaultTimeout{600};
// What is still on its way when the host has ended, or has brought this process to the front.
constexpr std::chrono::milliseconds timeForStragglers{300};
constexpr long ticksPerSecond = 60;

Failure failureOfStatus(OSStatus status) {
  switch (status) {
    case procNotFound:
      return {Status::noHost, "Korvo is not running"};
    case errAEEventNotHandled:
      return {Status::noHost, "Korvo is running, but without its plug-in for Mellel"};
    case connectionInvalid:
      return {Status::noHost, "Korvo cannot be reached: it has ended, or there is no session bus"};
    case memFullErr:
      return {
          Status::brokenDocumentOrReply,
          "Korvo has no room for the request: too much waits there already, or it is too large"};
    case errAETimeout:
      return {Status::brokenDocumentOrReply, "Korvo did not answer in time"};
    default:
      return {Status::brokenDocumentOrReply,
              "Korvo could not handle the request (error " + std::to_string(status) + ")"};
  }
}

// Nothing for an event without one.
std::string directObjectOf(const platform::IncomingEvent &event) {
  const platform::Parameter *parameter = platform::findParameter(event.parameters, keyDirectObject);
  if (parameter == nullptr) {
    return {};
  }
  const auto bytes = parameter->data.view();
  return {reinterpret_cast<const char *>(bytes.data()), bytes.size()};
}

std::optional<std::string> directObjectOf(const AppleEvent &event) {
  Size size = 0;
  if (AESizeOfParam(&event, keyDirectObject, nullptr, &size) != noErr) {
    return std::nullopt;
  }
  std::string bytes(static_cast<std::size_t>(size), '\0');
  AEGetParamPtr(&event, keyDirectObject, typeWildCard, nullptr, bytes.data(), size, nullptr);
  return bytes;
}

// What a handler that failed says in its reply; noErr in every other.
OSStatus errorOf(const AppleEvent &reply) {
  SInt32 number = noErr;
  return AEGetParamPtr(&reply, keyErrorNumber, typeSInt32, nullptr, &number, sizeof number,
                       nullptr) == noErr
             ? number
             : OSStatus{noErr};
}

OSStatus makeEvent(const Request &request, AEReturnID returnID, OwnedDescriptor &event) {
  OwnedDescriptor target;
  OSStatus status = AECreateDesc(typeApplSignature, &formats::korvoSignature,
                                 sizeof formats::korvoSignature, &target);
  if (status == noErr) {
    status = AECreateAppleEvent(formats::mellelSignature, request.eventID, &target, returnID,
                                kAnyTransactionID, &event);
  }
  if (status == noErr && request.payload) {
    status = AEPutParamPtr(&event, keyDirectObject, formats::textDescriptorType,
                           request.payload->data(), static_cast<Size>(request.payload->size()));
  }
  return status;
}

}  // namespace

class Host::State {
 public:
  State(std::optional<std::chrono::seconds> timeout, Progress &progress)
      : timeout_(timeout), progress_(progress) {
    for (const AnswerKind &kind : answerKinds) {
      platform::setEventHandler(kind.eventClass, kind.eventID,
                                [this, kind](const platform::IncomingEvent &event) {
                                  receive(kind, directObjectOf(event));
                                });
    }
    platform::setEventHandler(
        kCoreEventClass, kAEAnswer,
        [this](const platform::IncomingEvent &event) { receiveReply(event); });
  }
  ~State() {
    platform::removeEventHandler(kCoreEventClass, kAEAnswer);
    if (isReceiving_) {
      // Whoever has answered brings this process to the front: that is not wanted any more, but
      // nothing to complain about to its sender.
      handleLateEvents([this] { return wasActivated_; });
      platform::stopReceivingAppleEvents();
    }
    for (const AnswerKind &kind : answerKinds) {
      platform::removeEventHandler(kind.eventClass, kind.eventID);
    }
  }
  State(const State &) = delete;
  State &operator=(const State &) = delete;
  State(State &&) = delete;
  State &operator=(State &&) = delete;

  OSStatus startReceiving() {
    const OSStatus status = platform::startReceivingAppleEvents(formats::mellelSignature,
                                                                [this] { wasActivated_ = true; });
    isReceiving_ = status == noErr;
    return status;
  }

  // Nothing when this process was brought to the front without an answer.
  std::expected<std::optional<std::string>, Failure> ask(const Request &request,
                                                         const AnswerKind &answer,
                                                         bool endsWithActivation) {
    wanted_ = answer;
    documentID_ = request.documentID;
    answer_.reset();
    wasCancelled_ = wasActivated_ = hostHasEnded_ = false;
    refusal_ = noErr;
    ++returnID_;
    const platform::ProcessWatch watch(formats::korvoSignature, [this](bool isRunning) {
      hostHasEnded_ = hostHasEnded_ || !isRunning;
    });
    progress_.begin(request.step, request.hint);
    OwnedDescriptor event;
    OSStatus status = makeEvent(request, returnID_, event);
    if (status == noErr) {
      // The answer is an event of its own. The reply says no more than that the request was
      // handled, or that it was not.
      status = AESendMessage(&event, nullptr, kAEQueueReply, kNoTimeOut);
    }
    if (status != noErr) {
      progress_.end();
      return std::unexpected(failureOfStatus(status));
    }
    const auto isOver = [&] {
      return answer_ || wasCancelled_ || hostHasEnded_ || refusal_ != noErr ||
             (endsWithActivation && wasActivated_);
    };
    const auto timeout = timeoutOf(request);
    const bool isAnswered = runLoopUntil(isOver, deadlineAfter(timeout));
    if (!answer_ && !wasCancelled_ && isAnswered) {
      runLoopUntil([&] { return answer_ || wasCancelled_; }, deadlineAfter(timeForStragglers));
    }
    progress_.end();
    return outcome(endsWithActivation, timeout);
  }

  std::expected<std::optional<std::string>, Failure> askForReply(const Request &request) {
    progress_.begin(request.step, request.hint);
    OwnedDescriptor event;
    OwnedDescriptor reply;
    OSStatus status = makeEvent(request, kAutoGenerateReturnID, event);
    if (status == noErr) {
      const auto timeout = timeoutOf(request);
      status = AESendMessage(&event, &reply, kAEWaitReply,
                             timeout ? static_cast<long>(timeout->count()) * ticksPerSecond
                                     : static_cast<long>(kNoTimeOut));
    }
    progress_.end();
    if (status == noErr) {
      status = errorOf(reply);
    }
    if (status != noErr) {
      return std::unexpected(failureOfStatus(status));
    }
    return directObjectOf(reply);
  }

 private:
  using Milliseconds = std::chrono::milliseconds;

  void receive(const AnswerKind &kind, std::string payload) {
    if (answer_ || wasCancelled_ || isForAnother(payload)) {
      return;
    }
    if (kind == wanted_) {
      answer_ = std::move(payload);
    } else if (kind == cancelKind) {
      wasCancelled_ = true;
    }
  }

  void receiveReply(const platform::IncomingEvent &event) {
    const platform::Parameter *number = platform::findParameter(event.parameters, keyErrorNumber);
    SInt32 error = noErr;
    if (event.returnID != returnID_ || number == nullptr || number->data.size() != sizeof error) {
      return;
    }
    std::memcpy(&error, number->data.view().data(), sizeof error);
    // A host that has ended is noticed by the watch, which knows it from a bus that has ended.
    if (error != connectionInvalid) {
      refusal_ = error;
    }
  }

  // One that is too short to say is not.
  bool isForAnother(std::string_view payload) const {
    const auto named = documentIDOfAnswer(payload);
    return documentID_ && named && *named != *documentID_;
  }

  std::optional<std::chrono::seconds> timeoutOf(const Request &request) const {
    if (timeout_ || request.mayAskPerson) {
      return timeout_;
    }
    return defaultTimeout;
  }

  using Clock = std::chrono::steady_clock;
  static std::optional<Clock::time_point> deadlineAfter(std::optional<Milliseconds> time) {
    return time ? std::optional(Clock::now() + *time) : std::nullopt;
  }

  std::expected<std::optional<std::string>, Failure> outcome(
      bool endsWithActivation, std::optional<std::chrono::seconds> timeout) {
    if (answer_) {
      return std::move(answer_);
    }
    if (wasCancelled_) {
      return std::unexpected(Failure{Status::cancelledByHost, "cancelled in Korvo"});
    }
    if (hostHasEnded_) {
      return std::unexpected(Failure{Status::noHost, "Korvo ended before it answered"});
    }
    if (endsWithActivation && wasActivated_) {
      return std::nullopt;
    }
    if (refusal_ != noErr) {
      return std::unexpected(failureOfStatus(refusal_));
    }
    return std::unexpected(
        Failure{Status::brokenDocumentOrReply,
                "Korvo did not answer within " +
                    std::to_string(timeout.value_or(std::chrono::seconds(0)).count()) + " s"});
  }

  std::optional<std::chrono::seconds> timeout_;
  Progress &progress_;
  bool isReceiving_ = false;

  AnswerKind wanted_;
  std::optional<std::uint32_t> documentID_;
  std::optional<std::string> answer_;
  bool wasCancelled_ = false;
  bool wasActivated_ = false;
  bool hostHasEnded_ = false;
  // Of the request that is waited for, so that a late reply to another one is not taken for its.
  AEReturnID returnID_ = 0;
  OSStatus refusal_ = noErr;
};

Host::Host(std::unique_ptr<State> state) : state_(std::move(state)) {}

Host::~Host() = default;

std::expected<std::unique_ptr<Host>, Failure> Host::connect(
    Receiving receiving, std::optional<std::chrono::seconds> timeout, Progress &progress) {
  auto state = std::make_unique<State>(timeout, progress);
  const OSStatus status = state->startReceiving();
  if (status == portInUse && receiving == Receiving::required) {
    return std::unexpected(
        Failure{Status::wrongUsage, "another mellel is running, and would get the answers"});
  }
  if (status != noErr && status != portInUse) {
    return std::unexpected(failureOfStatus(status));
  }
  return std::unique_ptr<Host>(new Host(std::move(state)));
}

std::expected<std::string, Failure> Host::ask(const Request &request, const AnswerKind &answer) {
  auto answered = state_->ask(request, answer, false);
  if (!answered) {
    return std::unexpected(answered.error());
  }
  return std::move(**answered);
}

std::expected<std::optional<std::string>, Failure> Host::askIfAny(const Request &request,
                                                                  const AnswerKind &answer) {
  return state_->ask(request, answer, true);
}

std::expected<std::optional<std::string>, Failure> Host::askForReply(const Request &request) {
  return state_->askForReply(request);
}

}  // namespace mellel::conversation
