// Where exceptions end, those of Objective-C and those of C++, the host's and our own.
//
// What calls the plug-in knows nothing of them. Apple Events are dispatched by the system's code,
// and on macOS a C++ exception that reaches it may end the host. So everything that an event, the
// runtime or the last release calls does its work inside a boundary.
#pragma once

#import <ApplicationServices/ApplicationServices.h>
#import <Cocoa/Cocoa.h>

class ExceptionBoundary {
 public:
  // The method's name goes into the log.
  explicit ExceptionBoundary(const char *method) : method_(method) {}
  // The boundary of an event's handler: who waits for the event's reply finds errAEEventFailed in
  // it where an exception ended the work.
  ExceptionBoundary(const char *method, AEEventID event, NSAppleEventDescriptor *reply)
      : method_(method), event_(event), reply_(reply) {}

  // Calls work(). False if an exception ended it, which is then in the log with its reason, in one
  // line.
  template <typename Function>
  bool holds(const Function &work) const {
    return holds([](void *context) { (*static_cast<const Function *>(context))(); },
                 const_cast<Function *>(&work));
  }

 private:
  bool holds(void (*work)(void *), void *context) const;
  void report(NSString *reason) const;
  void tellSender() const;

  const char *method_;
  // 0 where there is none.
  AEEventID event_ = 0;
  // Not owned.
  NSAppleEventDescriptor *reply_ = nil;
};
