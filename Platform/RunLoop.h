// What the bus needs of the run loop: to be called when a descriptor is ready, in the modes that an
// application's main thread runs (default, modal panel, event tracking). No thread, no polling, and
// nothing of AppKit. Who links the platform decides whether this is Cocoa's run loop or the one of
// Platform/WithoutCocoa.
#pragma once

#include <functional>

namespace platform {

// Calls from the run loop that was current when it was made, whenever the descriptor is ready.
class RunLoopDescriptor {
 public:
  // The descriptor must stay open as long as this.
  RunLoopDescriptor(int descriptor, std::function<void()> onReady);
  ~RunLoopDescriptor();
  RunLoopDescriptor(const RunLoopDescriptor &) = delete;
  RunLoopDescriptor &operator=(const RunLoopDescriptor &) = delete;

  // Whether readiness for writing counts too; for reading always does.
  void setWatchesWriting(bool watches);

 private:
  static void fire(void *self);

  int descriptor_;
  bool watchesWriting_ = false;
  std::function<void()> onReady_;
  void *runLoop_;
  void *target_;
};

}  // namespace platform
