// How a process on Linux takes part in Apple Events: what macOS reads from an application's bundle
// and does in its event loop, a process here declares by a call.
//
// Everything is for the main thread, whose NSRunLoop must run (in the default, the modal-panel or
// the event-tracking mode) for events to arrive. Foundation suffices; no AppKit, no display. A tool
// that links PlatformWithoutCocoa has the run loop and the handlers of Platform/WithoutCocoa.
#pragma once

#include <ApplicationServices/MacErrors.h>
#include <ApplicationServices/MacTypes.h>

#include <functional>
#include <memory>

namespace platform {

// Declares the process's signature and begins to handle events for it with the handlers of
// NSAppleEventManager, from the current run loop. Install the handlers first: an event may arrive
// with the next turn of the run loop. `onActivate` (which may be empty) is called when another
// process wants this one in front, also while a handler sits in a modal session.
//
// When the message bus goes away and comes back the signature is declared again by itself.
//
// portInUse: another process has the signature. connectionInvalid: no session bus to be reached.
// paramErr: signature 0, or this process is receiving already.
OSStatus startReceivingAppleEvents(FourCharCode signature, std::function<void()> onActivate);

// Gives the signature up. Events that already arrived and were not handled yet are answered with
// procNotFound. Harmless when the process is not receiving.
void stopReceivingAppleEvents();

// Watches whether a process with a given signature runs.
class ProcessWatch {
 public:
  // `onChange` is called from the run loop with each change, with whether the process runs now. It
  // is not called for the state at the start. The end of the message bus counts as the end of the
  // process. It may destroy the watch.
  ProcessWatch(FourCharCode signature, std::function<void(bool isRunning)> onChange);
  ~ProcessWatch();
  ProcessWatch(const ProcessWatch &) = delete;
  ProcessWatch &operator=(const ProcessWatch &) = delete;

  // As last told by the bus.
  bool isRunning() const;

 private:
  class State;
  std::shared_ptr<State> state_;
};

}  // namespace platform
