#include "Host.h"

#import <Foundation/Foundation.h>

#import <ApplicationServices/ApplicationServices.h>
#include <Formats/EventTable.h>
#include <Platform/AppleEventsProcess.h>
#include <Platform/AutoreleasePool.h>

#include <array>
#include <utility>

#include "Conversation.h"
#include "LateEvents.h"
#include "RunLoop.h"

namespace {

using ReceivedEvent = std::function<void(const wordprocessor::AnswerKind &, std::string)>;

std::string bytesOf(NSAppleEventDescriptor *descriptor) {
  NSData *const data = [descriptor data];
  return data == nil ? std::string()
                     : std::string(static_cast<const char *>([data bytes]), [data length]);
}

}  // namespace

// The event manager wants an object; it passes on to the callback, which it borrows.
@interface AnswerReceiver : NSObject {
 @private
  const void *_onEvent;
}
- (instancetype)initWithCallback:(const ReceivedEvent *)onEvent;
- (void)install;
- (void)remove;
- (void)handleEvent:(NSAppleEventDescriptor *)event withReplyEvent:(NSAppleEventDescriptor *)reply;
@end

namespace wordprocessor {

namespace {

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
    case errAETimeout:
      return {Status::brokenDocumentOrReply, "Korvo did not answer in time"};
    default:
      return {Status::brokenDocumentOrReply,
              "Korvo could not handle the request (error " + std::to_string(status) + ")"};
  }
}

// Disposed of at the end of its scope.
class Descriptor {
 public:
  Descriptor() { AEInitializeDesc(&descriptor_); }
  ~Descriptor() { AEDisposeDesc(&descriptor_); }
  Descriptor(const Descriptor &) = delete;
  Descriptor &operator=(const Descriptor &) = delete;
  Descriptor(Descriptor &&) = delete;
  Descriptor &operator=(Descriptor &&) = delete;

  AEDesc *get() { return &descriptor_; }

 private:
  AEDesc descriptor_{};
};

OSStatus makeEvent(const Request &request, Descriptor &event) {
  Descriptor target;
  OSStatus status =
      AECreateDesc(typeApplSignature, &hostSignature, sizeof hostSignature, target.get());
  if (status == noErr) {
    status = AECreateAppleEvent(formats::mellelSignature, request.eventID, target.get(),
                                kAutoGenerateReturnID, kAnyTransactionID, event.get());
  }
  if (status == noErr && request.payload) {
    status = AEPutParamPtr(event.get(), keyDirectObject, formats::textDescriptorType,
                           request.payload->data(), static_cast<Size>(request.payload->size()));
  }
  return status;
}

}  // namespace

class Host::State {
 public:
  State(std::optional<std::chrono::seconds> timeout, Progress &progress)
      : timeout_(timeout),
        progress_(progress),
        onEvent_([this](const AnswerKind &kind, std::string payload) {
          receive(kind, std::move(payload));
        }),
        receiver_([[AnswerReceiver alloc] initWithCallback:&onEvent_]) {
    [receiver_ install];
  }
  ~State() {
    if (isReceiving_) {
      // What is still to come is not wanted, but nothing to complain about to its sender.
      handleWhatHasArrived();
      platform::stopReceivingAppleEvents();
    }
    [receiver_ remove];
    [receiver_ release];
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
    const platform::ProcessWatch watch(
        hostSignature, [this](bool isRunning) { hostHasEnded_ = hostHasEnded_ || !isRunning; });
    progress_.begin(request.step);
    Descriptor event;
    OSStatus status = makeEvent(request, event);
    if (status == noErr) {
      status = AESendMessage(event.get(), nullptr, kAENoReply, kNoTimeOut);
    }
    if (status != noErr) {
      progress_.end();
      return std::unexpected(failureOfStatus(status));
    }
    const auto isOver = [&] {
      return answer_ || wasCancelled_ || hostHasEnded_ || (endsWithActivation && wasActivated_);
    };
    const auto timeout = timeoutOf(request);
    const bool isAnswered = runLoopUntil(isOver, deadlineAfter(timeout), progress_);
    if (!answer_ && !wasCancelled_ && isAnswered) {
      runLoopUntil([&] { return answer_ || wasCancelled_; }, deadlineAfter(timeForStragglers),
                   progress_);
    }
    progress_.end();
    return outcome(endsWithActivation, timeout);
  }

  std::expected<std::optional<std::string>, Failure> askForReply(const Request &request) {
    const platform::AutoreleasePool pool;
    progress_.begin(request.step);
    Descriptor event;
    AppleEvent reply{};
    AEInitializeDesc(&reply);
    OSStatus status = makeEvent(request, event);
    if (status == noErr) {
      const auto timeout = timeoutOf(request);
      status = AESendMessage(event.get(), &reply, kAEWaitReply,
                             timeout ? static_cast<long>(timeout->count()) * ticksPerSecond
                                     : static_cast<long>(kNoTimeOut));
    }
    progress_.end();
    if (status != noErr) {
      return std::unexpected(failureOfStatus(status));
    }
    NSAppleEventDescriptor *const answered =
        [[[NSAppleEventDescriptor alloc] initWithAEDescNoCopy:&reply] autorelease];
    NSAppleEventDescriptor *const directObject =
        [answered paramDescriptorForKeyword:keyDirectObject];
    return directObject == nil ? std::nullopt : std::optional(bytesOf(directObject));
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

  static std::optional<Progress::Clock::time_point> deadlineAfter(
      std::optional<Milliseconds> time) {
    return time ? std::optional(Progress::Clock::now() + *time) : std::nullopt;
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
    return std::unexpected(
        Failure{Status::brokenDocumentOrReply,
                "Korvo did not answer within " +
                    std::to_string(timeout.value_or(std::chrono::seconds(0)).count()) + " s"});
  }

  std::optional<std::chrono::seconds> timeout_;
  Progress &progress_;
  ReceivedEvent onEvent_;
  AnswerReceiver *receiver_;
  bool isReceiving_ = false;

  AnswerKind wanted_;
  std::optional<std::uint32_t> documentID_;
  std::optional<std::string> answer_;
  bool wasCancelled_ = false;
  bool wasActivated_ = false;
  bool hostHasEnded_ = false;
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

}  // namespace wordprocessor

@implementation AnswerReceiver

- (instancetype)initWithCallback:(const ReceivedEvent *)onEvent {
  self = [super init];
  if (self != nil) {
    _onEvent = onEvent;
  }
  return self;
}

- (void)install {
  for (const wordprocessor::AnswerKind &kind : wordprocessor::answerKinds) {
    [[NSAppleEventManager sharedAppleEventManager] setEventHandler:self
                                                       andSelector:@selector(handleEvent:
                                                                          withReplyEvent:)
                                                     forEventClass:kind.eventClass
                                                        andEventID:kind.eventID];
  }
}

- (void)remove {
  for (const wordprocessor::AnswerKind &kind : wordprocessor::answerKinds) {
    [[NSAppleEventManager sharedAppleEventManager] removeEventHandlerForEventClass:kind.eventClass
                                                                        andEventID:kind.eventID];
  }
}

- (void)handleEvent:(NSAppleEventDescriptor *)event withReplyEvent:(NSAppleEventDescriptor *)reply {
  (void)reply;
  const auto &onEvent = *static_cast<const ReceivedEvent *>(_onEvent);
  onEvent({[event eventClass], [event eventID]},
          bytesOf([event paramDescriptorForKeyword:keyDirectObject]));
}

@end
