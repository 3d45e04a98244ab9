#import "ExceptionBoundary.h"

#include "LeavingException.h"
#import "TextBridge.h"
#import "ThrownObject.h"

namespace {

// The work inside of both nets: C++'s outside, because C++ exceptions pass through the other one.
struct Inner {
  void (*work)(void *);
  void *context;
  bool isDone = false;
  id thrown = nil;
};

void doWork(void *context) {
  Inner &inner = *static_cast<Inner *>(context);
  inner.work(inner.context);
  inner.isDone = true;
}

void catchObject(void *context) {
  static_cast<Inner *>(context)->thrown = KOMellelObjectThrownBy(doWork, context);
}

template <typename Step>
bool succeeds(const Step &step) {
  try {
    step();
    return true;
  } catch (...) {
    return false;
  }
}

void keepReason(const char *what, void *context) {
  succeeds([&] { *static_cast<NSString **>(context) = stringWithUTF8(what); });
}

NSString *reasonOf(id thrown) {
  return [thrown isKindOfClass:[NSException class]]
             ? [NSString stringWithFormat:@"%@: %@", [thrown name], [thrown reason]]
             : [NSString stringWithFormat:@"%@", thrown];
}

char character(AEEventID event, int place) {
  return static_cast<char>(event >> (24 - 8 * place) & 0xFF);
}

}  // namespace

bool ExceptionBoundary::holds(void (*work)(void *), void *context) const {
  Inner inner = {work, context};
  NSString *reason = nil;
  const bool isCPP = isLeftByCPPException(catchObject, &inner, keepReason, &reason);
  if (inner.isDone) {
    return true;
  }
  // What is left to do can fail as well: for want of memory, or because the object that was thrown
  // throws when it is asked what it is. Each step has to be tried all the same.
  const bool isReported = succeeds([&] { report(isCPP ? reason : reasonOf(inner.thrown)); });
  if (!isReported) {
    succeeds([&] {
      NSLog(@"KorvoMellelAgent.%s: ended by an exception that does not say why", method_);
    });
  }
  succeeds([&] { tellSender(); });
  return false;
}

void ExceptionBoundary::report(NSString *reason) const {
  if (event_ == 0) {
    NSLog(@"KorvoMellelAgent.%s: ended by an exception: %@", method_, reason);
    return;
  }
  NSLog(@"KorvoMellelAgent.%s: event '%c%c%c%c' was ended by an exception: %@", method_,
        character(event_, 0), character(event_, 1), character(event_, 2), character(event_, 3),
        reason);
}

// Where no reply is wanted, the reply event is a null descriptor, which takes no parameters.
void ExceptionBoundary::tellSender() const {
  if (reply_ == nil || [reply_ descriptorType] == typeNull) {
    return;
  }
  [reply_ setDescriptor:[NSAppleEventDescriptor descriptorWithInt32:errAEEventFailed]
             forKeyword:keyErrorNumber];
}
