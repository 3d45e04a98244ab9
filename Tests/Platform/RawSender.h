// A program that talks to the test peer with nothing of this library: what it can do, any program
// of the user's can.
#pragma once

#include "BusFixture.h"

#include <Platform/Bus/BusHandles.h>

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <string>

namespace platform_test {

using platform::adoptMessage;
using platform::BusError;
using platform::Connection;
using platform::Message;

// Spelled out: a bus name is the signature in hexadecimal digits.
inline constexpr char peerName[] = "org.korvo.AppleEvents.S50656572";
inline constexpr char objectPath[] = "/org/korvo/AppleEvents";
inline constexpr char interfaceName[] = "org.korvo.AppleEvents1";
inline constexpr char errorPrefix[] = "org.korvo.AppleEvents1.Error.S";

inline constexpr int allSeals = F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_WRITE | F_SEAL_SEAL;

class RawSender : public BusFixture {
 protected:
  RawSender() {
    sd_bus *bus = nullptr;
    EXPECT_GE(sd_bus_open_user(&bus), 0);
    client_.reset(bus);
  }

  Message newSend(AEEventID eventID) {
    sd_bus_message *message = nullptr;
    EXPECT_GE(sd_bus_message_new_method_call(client_.get(), &message, peerName, objectPath,
                                             interfaceName, "Send"),
              0);
    EXPECT_GE(sd_bus_message_append(message, "uu", testClass, eventID), 0);
    return adoptMessage(message);
  }

  struct Answer {
    std::string error;
    Message message;
  };

  Answer call(const Message &message) {
    BusError error;
    sd_bus_message *reply = nullptr;
    sd_bus_call(client_.get(), message.get(), 20'000'000, error.out(), &reply);
    return {error.get().name == nullptr ? "" : error.get().name,
            reply == nullptr ? nullptr : adoptMessage(reply)};
  }

  Answer echoFile(int descriptor) {
    const Message message = newSend(echoEvent);
    EXPECT_GE(sd_bus_message_append(message.get(), "a(uuv)", 1, keyDirectObject, typeChar, "h",
                                    descriptor),
              0);
    return call(message);
  }

  void expectPeerAlive() { EXPECT_EQ(sendAndWait(peerSignature, echoEvent, "x").reply, "x"); }

  static int memoryFile(std::size_t size, int seals) {
    const int file = memfd_create("test", MFD_CLOEXEC | MFD_ALLOW_SEALING);
    EXPECT_EQ(ftruncate(file, static_cast<off_t>(size)), 0);
    EXPECT_EQ(fcntl(file, F_ADD_SEALS, seals), 0);
    return file;
  }

  Connection client_;
};

}  // namespace platform_test
