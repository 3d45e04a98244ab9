// The receiving end of a process: its name and its object on the bus, and the dispatch of what
// arrives there.
//
// An event is taken off the bus as soon as it is there, checked, and put into the inbox; its
// handler runs later, from the run loop, when no other handler runs. A handler may run the run loop
// itself (a modal dialog): events that arrive then stay in the inbox until it has returned. So
// handlers run one at a time, each to completion, in the order in which their events arrived.
#pragma once

#include "BusConnection.h"
#include "EventInbox.h"
#include "RefusalLog.h"

#include <functional>

namespace platform {

class EventReceiver final : private BusClient {
 public:
  // The process's only one. Never destroyed.
  static EventReceiver &shared();

  // As startReceivingAppleEvents.
  OSStatus start(FourCharCode signature, std::function<void()> onActivate);
  void stop();

  // Puts a reply that the sender did not wait for into the inbox, as an event 'aevt' 'ansr'. An
  // error is its parameter 'errn' (keyErrorNumber). One for which there is no room is logged and
  // dropped.
  void replyArrived(const Message &reply, AEReturnID returnID);

  // 0 while this process does not receive.
  FourCharCode signature() const { return signature_; }

  // For tests alone, of what macOS may do and no process on Linux meets: with true an event that
  // arrives while a handler runs the run loop is dispatched there, inside of that handler.
  void setNestsHandlers(bool nests) { nestsHandlers_ = nests; }

 private:
  explicit EventReceiver(BusConnection &connection);

  static int sendArrived(sd_bus_message *message, void *self, sd_bus_error *error);
  static int activateArrived(sd_bus_message *message, void *self, sd_bus_error *error);
  static const sd_bus_vtable methods[];

  void busIsBack(sd_bus *bus) override;
  void busIsGone() override;

  OSStatus exportObject(sd_bus *bus);
  OSStatus receive(const Message &request);
  OSStatus take(WaitingEvent waiting);
  bool mustWait() const { return isDispatching_ && !nestsHandlers_; }
  void dispatchLater();
  void dispatchWaiting();
  void dispatch(const WaitingEvent &waiting);
  void releaseHeapLater();
  void releaseHeap();
  OSStatus answer(const Message &request, const Parameters &parameters);
  // Whatever happens, whoever waits for an answer learns that none comes.
  void refuse(const Message &request, OSStatus status);

  BusConnection &connection_;
  FourCharCode signature_ = 0;
  std::function<void()> onActivate_;
  Slot object_;
  EventInbox inbox_;
  RefusalLog refusals_;
  bool isDispatching_ = false;
  bool nestsHandlers_ = false;
  bool willDispatch_ = false;
  // Since the heap was released.
  std::size_t bytesDispatched_ = 0;
  bool willReleaseHeap_ = false;
  RunLoopTimer heapRelease_;
};

}  // namespace platform
