#include "FalseMellel.h"

#include <chrono>
#include <cstdint>
#include <stdexcept>
#include <stop_token>

namespace endtoend {
namespace {

using platform::adoptMessage;
using platform::Message;

constexpr char mellelName[] = "org.korvo.AppleEvents.S6D4C654C";
constexpr std::chrono::milliseconds slowness{200};

void sendErrorTo(sd_bus_message *message) {
  sd_bus_message *error = nullptr;
  if (sd_bus_message_new_method_errorf(message, &error, "org.korvo.AppleEvents1.Error.S108",
                                       "no") >= 0) {
    const Message owned = adoptMessage(error);
    sd_bus_send(nullptr, error, nullptr);
  }
}

void sendNonsenseTo(sd_bus_message *message) {
  for (int count = 0; count < 2; ++count) {
    sd_bus_message *reply = nullptr;
    if (sd_bus_message_new_method_return(message, &reply) >= 0) {
      const Message owned = adoptMessage(reply);
      sd_bus_message_append(reply, "sa{su}", "nonsense", 1, "more", 7U);
      sd_bus_send(nullptr, reply, nullptr);
    }
  }
  sd_bus_call_method_async(sd_bus_message_get_bus(message), nullptr,
                           sd_bus_message_get_sender(message), "/org/korvo/AppleEvents",
                           "org.korvo.AppleEvents1", "Sned", nullptr, nullptr, "s", "nonsense");
}

}  // namespace

FalseMellel::FalseMellel(Manner manner) : manner_(manner) {
  sd_bus *bus = nullptr;
  if (sd_bus_open_user(&bus) < 0) {
    throw std::runtime_error("there is no bus");
  }
  bus_.reset(bus);
  hasName_ = sd_bus_request_name(bus, mellelName, SD_BUS_NAME_REPLACE_EXISTING) >= 0;
  if (manner != Manner::readsNothing) {
    sd_bus_add_filter(bus, nullptr, receive, this);
    server_ = std::jthread([this](const std::stop_token &stop) { serve(stop); });
  }
}

FalseMellel::~FalseMellel() {
  server_.request_stop();
  if (server_.joinable()) {
    server_.join();
  }
}

void FalseMellel::serve(const std::stop_token &stop) {
  constexpr std::uint64_t turn = 20'000;
  while (!stop.stop_requested()) {
    if (sd_bus_process(bus_.get(), nullptr) == 0) {
      sd_bus_wait(bus_.get(), turn);
    }
  }
}

int FalseMellel::receive(sd_bus_message *message, void *self, sd_bus_error *) {
  std::uint8_t type = 0;
  sd_bus_message_get_type(message, &type);
  if (type != SD_BUS_MESSAGE_METHOD_CALL) {
    return 0;
  }
  auto &peer = *static_cast<FalseMellel *>(self);
  ++peer.received_;
  peer.answer(message);
  return 1;
}

void FalseMellel::answer(sd_bus_message *message) const {
  switch (manner_) {
    case Manner::readsNothing:
      break;
    case Manner::refuses:
      sendErrorTo(message);
      break;
    case Manner::answersNonsense:
      sendNonsenseTo(message);
      break;
    case Manner::isSlow:
      std::this_thread::sleep_for(slowness);
      sd_bus_reply_method_return(message, nullptr);
      break;
  }
}

}  // namespace endtoend
