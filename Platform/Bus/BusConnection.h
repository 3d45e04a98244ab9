// The one connection of a process to the session bus.
//
// Everything that arrives is taken off the bus inside sd_bus_process, where nothing may be called
// that could come back to the bus. So what arrives is only noted there; what it leads to (handlers,
// callbacks) is a task, run later from the run loop. Tasks also run in nested run loops, as of a
// modal dialog, but never inside a wait for a reply.
#pragma once

#include "BusHandles.h"
#include "NameOwners.h"

#include <Platform/RunLoop.h>
#include <Platform/RunLoopTimer.h>

#include <ApplicationServices/MacTypes.h>

#include <chrono>
#include <deque>
#include <expected>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace platform {

// What holds something on the bus that has to be made anew after the bus was gone.
class BusClient {
 public:
  virtual ~BusClient() = default;
  // There is a new connection. Must not open or lose it.
  virtual void busIsBack(sd_bus *bus) = 0;
  // The connection has ended; what was on it is void.
  virtual void busIsGone() = 0;
};

class BusConnection {
 public:
  // Made with the first use, by the thread whose run loop is to serve it. Never destroyed.
  static BusConnection &session();

  // The connection, opened where there is none or where it has ended. connectionInvalid.
  std::expected<sd_bus *, OSStatus> open();

  // While there are clients, a lost connection is tried again and again, with growing pauses.
  void addClient(BusClient *client);
  void removeClient(BusClient *client);

  // To be run from the run loop.
  void addTask(std::function<void()> task);

  // Sends a message and sees it leave the process. connectionInvalid; memFullErr.
  OSStatus send(sd_bus_message *message);

  // Sends a method call and calls back with its answer, or its error, from the run loop. Where the
  // connection ends before there is one, nobody is called.
  OSStatus sendForReply(sd_bus_message *message, std::function<void(const Message &)> onReply);

  // Sends a method call and waits for the answer. Nothing is dispatched meanwhile. errAETimeout,
  // connectionInvalid, or the status that the error in the answer stands for.
  std::expected<Message, OSStatus> call(sd_bus_message *message, std::chrono::microseconds timeOut);
  static constexpr std::chrono::microseconds noTimeOut = std::chrono::microseconds::max();

  // For a message that can be answered neither well nor with an error. Its connection ends with
  // the next turn of the run loop, and so the bus itself tells the sender, who would wait for
  // ever.
  void giveUp(const Message &message);

  // Who owns a name of an application signature. procNotFound when nobody does.
  std::expected<NameOwners::Owner, OSStatus> ownerOf(const std::string &name);
  // Asks the bus itself, about a name. procNotFound when nobody owns the name.
  static std::expected<Message, OSStatus> askOn(sd_bus *bus, const char *method,
                                                const std::string &name);
  static std::expected<std::vector<std::string>, OSStatus> listNamesOn(sd_bus *bus);
  // The next greater name of an application signature: NameOwners::nameBehind.
  std::expected<std::string, OSStatus> nameBehind(const std::string &name);
  OSStatus renewNames();

  // To be called after anything that may have taken messages off the socket.
  void arm();

 private:
  // Waits until the connection has written all that it holds; the result of the call before it.
  OSStatus writeOut(sd_bus *bus, int result);
  using Clock = std::chrono::steady_clock;

  BusConnection();

  // Who owns what, on the connection that there is now.
  std::expected<NameOwners *, OSStatus> owners();
  // Drops a connection by which no answer came and that is closed; then arms.
  void settle(bool isAnswered);

  void runLoopTurn();
  // Takes in all that has arrived, but starts with no further message at that moment.
  void processWaiting(Clock::time_point until);
  void runTasks();
  void reconnect();
  void drop();
  bool isOpen() const;
  bool hasHungUp() const;

  RunLoopTimer wakeUp_;
  RunLoopTimer reconnection_;
  Connection bus_;
  std::unique_ptr<RunLoopDescriptor> descriptor_;
  std::unique_ptr<NameOwners> owners_;
  std::vector<BusClient *> clients_;
  std::deque<std::function<void()>> tasks_;
  // While the tasks that come now will be run without another turn of the run loop.
  bool willRunTasks_ = false;
  std::chrono::milliseconds pause_;
};

}  // namespace platform
