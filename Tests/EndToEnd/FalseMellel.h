// A program that takes the word processor's name on the bus and is none: what it can do to the host
// and to a real word processor, any program of the user's can.
#pragma once

#include <Platform/Bus/BusHandles.h>

#include <atomic>
#include <stop_token>
#include <thread>

namespace endtoend {

class FalseMellel {
 public:
  // What it does with what it is sent.
  enum class Manner {
    readsNothing,
    // An error to each message, also where nobody wants an answer.
    refuses,
    // An answer of another shape to each, a second one, and one to a call that was never made.
    answersNonsense,
    // An empty answer to each, a fifth of a second later.
    isSlow,
  };

  // Takes the name, from another owner too if that lets it go.
  explicit FalseMellel(Manner manner);
  ~FalseMellel();
  FalseMellel(const FalseMellel &) = delete;
  FalseMellel &operator=(const FalseMellel &) = delete;

  bool hasName() const { return hasName_; }
  // Of the messages that it read.
  int received() const { return received_; }

 private:
  static int receive(sd_bus_message *message, void *self, sd_bus_error *error);
  void answer(sd_bus_message *message) const;
  void serve(const std::stop_token &stop);

  Manner manner_;
  platform::Connection bus_;
  bool hasName_ = false;
  std::atomic<int> received_ = 0;
  std::jthread server_;
};

}  // namespace endtoend
