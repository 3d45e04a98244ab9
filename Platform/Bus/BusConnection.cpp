#include "BusConnection.h"

#include "BusNames.h"

#include <Platform/GuardedCall.h>

#include <ApplicationServices/MacErrors.h>
#include <poll.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <utility>

namespace platform {
namespace {

using namespace std::chrono_literals;

constexpr std::chrono::milliseconds firstPause = 250ms;
constexpr std::chrono::milliseconds longestPause = 4s;
// So that a flood of messages leaves the run loop time for other things.
constexpr std::chrono::milliseconds longestReading = 10ms;

constexpr char driverName[] = "org.freedesktop.DBus";
constexpr char driverPath[] = "/org/freedesktop/DBus";

struct AwaitedReply {
  Message message;

  static int arrived(sd_bus_message *message, void *self, sd_bus_error *) {
    static_cast<AwaitedReply *>(self)->message = shareMessage(message);
    return 1;
  }
};

struct ExpectedReply {
  std::function<void(const Message &)> onReply;

  static int arrived(sd_bus_message *message, void *self, sd_bus_error *) {
    const Message reply = shareMessage(message);
    // Without memory the reply is lost, as one that never came.
    (void)exceptionLeaving([&] { static_cast<ExpectedReply *>(self)->onReply(reply); });
    return 1;
  }
  static void destroy(void *self) { delete static_cast<ExpectedReply *>(self); }
};

std::uint64_t asBusTime(std::chrono::microseconds timeOut) {
  // sd-bus takes 0 for its own default.
  return timeOut == BusConnection::noTimeOut
             ? UINT64_MAX
             : static_cast<std::uint64_t>(std::max(timeOut, 1us).count());
}

}  // namespace

BusConnection &BusConnection::session() {
  static BusConnection *connection = new BusConnection();
  return *connection;
}

BusConnection::BusConnection()
    : wakeUp_([this] { runLoopTurn(); }),
      reconnection_([this] { reconnect(); }),
      pause_(firstPause) {}

std::expected<sd_bus *, OSStatus> BusConnection::open() {
  if (bus_ != nullptr && !hasHungUp()) {
    return bus_.get();
  }
  // What arrived before the bus went away is still to be had, and has an end.
  processWaiting(Clock::time_point::max());
  drop();
  sd_bus *opened = nullptr;
  const char *uniqueName = nullptr;
  if (!wakeUp_.isUsable() || !reconnection_.isUsable() ||
      sd_bus_open_user_with_description(&opened, "apple-events") < 0) {
    return std::unexpected(OSStatus{connectionInvalid});
  }
  Connection connection(opened);
  // The bus's greeting is awaited, to know that somebody is there.
  if (sd_bus_get_unique_name(opened, &uniqueName) < 0) {
    return std::unexpected(OSStatus{connectionInvalid});
  }
  bus_ = std::move(connection);
  descriptor_ =
      std::make_unique<RunLoopDescriptor>(sd_bus_get_fd(opened), [this] { runLoopTurn(); });
  reconnection_.cancel();
  pause_ = firstPause;
  for (BusClient *client : std::vector(clients_)) {
    client->busIsBack(opened);
  }
  arm();
  return opened;
}

void BusConnection::addClient(BusClient *client) { clients_.push_back(client); }

void BusConnection::removeClient(BusClient *client) {
  std::erase(clients_, client);
  if (clients_.empty()) {
    reconnection_.cancel();
  }
}

void BusConnection::addTask(std::function<void()> task) {
  tasks_.push_back(std::move(task));
  if (!willRunTasks_) {
    wakeUp_.callAfter(0us);
  }
}

OSStatus BusConnection::send(sd_bus_message *message) {
  const Message kept = shareMessage(message);
  sd_bus *bus = sd_bus_message_get_bus(message);
  return writeOut(bus, sd_bus_send(bus, message, nullptr));
}

OSStatus BusConnection::sendForReply(sd_bus_message *message,
                                     std::function<void(const Message &)> onReply) {
  const Message kept = shareMessage(message);
  sd_bus *bus = sd_bus_message_get_bus(message);
  auto expected = std::make_unique<ExpectedReply>(std::move(onReply));
  sd_bus_slot *slot = nullptr;
  int result = sd_bus_call_async(bus, &slot, message, ExpectedReply::arrived, expected.get(),
                                 asBusTime(noTimeOut));
  const Slot call(slot);
  // From here on the connection owns both: until the reply has come, or its own end.
  if (result >= 0) {
    result = sd_bus_slot_set_destroy_callback(slot, ExpectedReply::destroy);
  }
  if (result >= 0) {
    (void)expected.release();
    result = sd_bus_slot_set_floating(slot, 1);
  }
  return writeOut(bus, result);
}

OSStatus BusConnection::writeOut(sd_bus *bus, int result) {
  // What the other side has sent meanwhile is taken in: sd_bus_flush would leave it, and burn the
  // processor's time for as long as there is something to read and no room to write.
  std::uint64_t unsent = 0;
  while (result >= 0 && sd_bus_get_n_queued_write(bus, &unsent) >= 0 && unsent > 0) {
    result = sd_bus_process(bus, nullptr);
    if (result == 0) {
      result = sd_bus_wait(bus, UINT64_MAX);
    }
    result = result == -EINTR ? 0 : result;
  }
  if (result >= 0) {
    return noErr;
  }
  if (bus == bus_.get() && !isOpen()) {
    drop();
  }
  return result == -ENOBUFS || result == -ENOMEM ? memFullErr : connectionInvalid;
}

void BusConnection::giveUp(const Message &message) {
  addTask([this, message] {
    // The message keeps its connection alive, so that no later one can be taken for it.
    if (sd_bus_message_get_bus(message.get()) == bus_.get()) {
      drop();
    }
  });
}

std::expected<Message, OSStatus> BusConnection::call(sd_bus_message *message,
                                                     std::chrono::microseconds timeOut) {
  sd_bus *bus = sd_bus_message_get_bus(message);
  AwaitedReply reply;
  sd_bus_slot *slot = nullptr;
  const auto start = Clock::now();
  if (sd_bus_call_async(bus, &slot, message, AwaitedReply::arrived, &reply, asBusTime(timeOut)) <
      0) {
    if (!isOpen()) {
      drop();
    }
    return std::unexpected(OSStatus{connectionInvalid});
  }
  const Slot awaited(slot);
  // The answer is not there yet when the question has just left: to look would be in vain.
  int result = 0;
  while (reply.message == nullptr) {
    if (result == 0) {
      result = sd_bus_wait(bus, UINT64_MAX);
    }
    if (result >= 0 || result == -EINTR) {
      result = sd_bus_process(bus, nullptr);
    }
    if (result < 0 && result != -EINTR) {
      drop();
      return std::unexpected(OSStatus{connectionInvalid});
    }
  }
  arm();
  const sd_bus_error *error = sd_bus_message_get_error(reply.message.get());
  if (error == nullptr) {
    return reply.message;
  }
  // sd-bus words a time-out of its own as the bus words the death of the one who should answer.
  const OSStatus status = statusOfError(error->name);
  const bool isLate = timeOut != noTimeOut && Clock::now() - start >= timeOut;
  return std::unexpected(status == connectionInvalid && isLate ? OSStatus{errAETimeout} : status);
}

std::expected<Message, OSStatus> BusConnection::askOn(sd_bus *bus, const char *method,
                                                      const std::string &name) {
  BusError error;
  sd_bus_message *reply = nullptr;
  const char *types = name.empty() ? nullptr : "s";
  if (sd_bus_call_method(bus, driverName, driverPath, driverName, method, error.out(), &reply,
                         types, name.c_str()) >= 0) {
    return adoptMessage(reply);
  }
  const char *errorName = error.get().name;
  return std::unexpected(errorName == nullptr ? OSStatus{connectionInvalid}
                                              : statusOfError(errorName));
}

std::expected<NameOwners *, OSStatus> BusConnection::owners() {
  // What the bus has told and nobody has read yet counts.
  processWaiting(Clock::now() + longestReading);
  const auto bus = open();
  if (!bus) {
    return std::unexpected(bus.error());
  }
  if (owners_ == nullptr) {
    owners_ = std::make_unique<NameOwners>(*bus);
  }
  return owners_.get();
}

void BusConnection::settle(bool isAnswered) {
  if (!isAnswered && !isOpen()) {
    drop();
  }
  arm();
}

std::expected<NameOwners::Owner, OSStatus> BusConnection::ownerOf(const std::string &name) {
  const auto known = owners();
  if (!known) {
    return std::unexpected(known.error());
  }
  auto owner = (*known)->find(name);
  settle(owner.has_value());
  return owner;
}

std::expected<std::string, OSStatus> BusConnection::nameBehind(const std::string &name) {
  const auto known = owners();
  if (!known) {
    return std::unexpected(known.error());
  }
  auto found = (*known)->nameBehind(name);
  settle(found.has_value());
  return found;
}

OSStatus BusConnection::renewNames() {
  const auto known = owners();
  if (!known) {
    return known.error();
  }
  const OSStatus status = (*known)->renewNames();
  settle(status == noErr);
  return status;
}

std::expected<std::vector<std::string>, OSStatus> BusConnection::listNamesOn(sd_bus *bus) {
  const auto reply = askOn(bus, "ListNames", "");
  if (!reply) {
    return std::unexpected(reply.error());
  }
  std::vector<std::string> names;
  const char *name = nullptr;
  if (sd_bus_message_enter_container(reply->get(), 'a', "s") < 0) {
    return std::unexpected(OSStatus{connectionInvalid});
  }
  while (sd_bus_message_read_basic(reply->get(), 's', &name) > 0) {
    names.emplace_back(name);
  }
  return names;
}

void BusConnection::arm() {
  std::uint64_t due = UINT64_MAX;
  if (bus_ != nullptr) {
    const int events = sd_bus_get_events(bus_.get());
    descriptor_->setWatchesWriting(events >= 0 && (events & POLLOUT) != 0);
    if (sd_bus_get_timeout(bus_.get(), &due) < 0) {
      due = UINT64_MAX;
    }
  }
  if (!tasks_.empty()) {
    due = 0;
  }
  if (due == UINT64_MAX) {
    wakeUp_.cancel();
    return;
  }
  // Due times are of the monotonic clock, which is the steady clock here.
  const auto now =
      std::chrono::duration_cast<std::chrono::microseconds>(Clock::now().time_since_epoch());
  wakeUp_.callAfter(std::chrono::microseconds(due) - now);
}

void BusConnection::runLoopTurn() {
  willRunTasks_ = true;
  processWaiting(Clock::now() + longestReading);
  willRunTasks_ = false;
  runTasks();
  arm();
}

void BusConnection::processWaiting(Clock::time_point until) {
  while (bus_ != nullptr) {
    const int result = sd_bus_process(bus_.get(), nullptr);
    if (result < 0) {
      drop();
    }
    if (result <= 0 || Clock::now() >= until) {
      return;
    }
  }
}

void BusConnection::runTasks() {
  // A task that runs a nested run loop leaves the ones behind it to that loop. Tasks that tasks add
  // are left to the next turn.
  for (std::size_t count = tasks_.size(); count > 0 && !tasks_.empty(); --count) {
    const std::function<void()> task = std::move(tasks_.front());
    tasks_.pop_front();
    // What the task may keep from being reached below: by a nested run loop, by an exception.
    arm();
    task();
  }
}

void BusConnection::reconnect() {
  if (!open()) {
    reconnection_.callAfter(pause_);
    pause_ = std::min(pause_ * 2, longestPause);
  }
}

void BusConnection::drop() {
  if (bus_ == nullptr) {
    return;
  }
  descriptor_.reset();
  owners_.reset();
  bus_.reset();
  for (BusClient *client : std::vector(clients_)) {
    client->busIsGone();
  }
  arm();
  if (!clients_.empty()) {
    reconnection_.callAfter(pause_);
  }
}

bool BusConnection::isOpen() const { return bus_ != nullptr && sd_bus_is_open(bus_.get()) > 0; }

bool BusConnection::hasHungUp() const {
  pollfd entry{sd_bus_get_fd(bus_.get()), 0, 0};
  return !isOpen() || poll(&entry, 1, 0) > 0;
}

}  // namespace platform
