// Messages that carry descriptors which their bodies never name. GIO sends them: sd-bus, with which
// the library itself speaks, attaches only what a body names.
#include "RawSender.h"

#include <gio/gio.h>
#include <gio/gunixfdlist.h>
#include <sys/resource.h>

#include <array>
#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <memory>

using namespace platform_test;

namespace {

constexpr rlim_t descriptorLimit = 128;
constexpr int messages = 70;
constexpr std::size_t descriptorsInEach = 16;  // the bus daemon's limit

struct Unreference {
  void operator()(gpointer object) const { g_object_unref(object); }
};
template <typename T>
using Object = std::unique_ptr<T, Unreference>;

class DescriptorFlood : public RawSender {
 protected:
  DescriptorFlood() {
    const auto flags =
        static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                          G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);
    connection_.reset(g_dbus_connection_new_for_address_sync(
        std::getenv("DBUS_SESSION_BUS_ADDRESS"), flags, nullptr, nullptr, nullptr));
    EXPECT_NE(connection_, nullptr);
  }
  ~DescriptorFlood() override { g_dbus_connection_close_sync(connection_.get(), nullptr, nullptr); }

  void limitThePeer() const {
    const rlimit limit{.rlim_cur = descriptorLimit, .rlim_max = descriptorLimit};
    ASSERT_EQ(prlimit(peer_->number(), RLIMIT_NOFILE, &limit, nullptr), 0);
  }

  std::size_t openDescriptorsOfThePeer() const {
    const auto folder = "/proc/" + std::to_string(peer_->number()) + "/fd";
    return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(folder), {}));
  }

  // An event of an unknown ID without a parameter, and descriptors beside it.
  void sendDescriptors(int descriptor) const {
    const Object<GDBusMessage> message(
        g_dbus_message_new_method_call(peerName, objectPath, interfaceName, "Send"));
    g_dbus_message_set_body(message.get(),
                            g_variant_new("(uua(uuv))", testClass, code("none"), nullptr));
    g_dbus_message_set_flags(message.get(), G_DBUS_MESSAGE_FLAGS_NO_REPLY_EXPECTED);
    const Object<GUnixFDList> descriptors(g_unix_fd_list_new());
    for (std::size_t number = 0; number < descriptorsInEach; ++number) {
      EXPECT_GE(g_unix_fd_list_append(descriptors.get(), descriptor, nullptr), 0);
    }
    g_dbus_message_set_unix_fd_list(message.get(), descriptors.get());
    EXPECT_TRUE(g_dbus_connection_send_message(connection_.get(), message.get(),
                                               G_DBUS_SEND_MESSAGE_FLAGS_NONE, nullptr, nullptr));
    EXPECT_TRUE(g_dbus_connection_flush_sync(connection_.get(), nullptr, nullptr));
  }

  Object<GDBusConnection> connection_;
};

TEST_F(DescriptorFlood, BehindADialogTakesNoDescriptorsAndTheHonestSenderIsAnswered) {
  expectPeerAlive();
  limitThePeer();
  const std::size_t before = openDescriptorsOfThePeer();
  ASSERT_LT(before + descriptorsInEach, descriptorLimit);
  ASSERT_EQ(sendOneWay(peerSignature, nestEvent, "1500"), noErr);
  const int null = open("/dev/null", O_RDONLY | O_CLOEXEC);
  for (int number = 0; number < messages; ++number) {
    sendDescriptors(null);
  }
  close(null);
  // Nobody else got the name: the same process answers, after its dialog.
  EXPECT_EQ(sendAndWait(peerSignature, echoEvent, "honest").reply, "honest");
  EXPECT_EQ(peerNotes(), "nest\nnested\n");
  EXPECT_EQ(openDescriptorsOfThePeer(), before);
}

TEST_F(DescriptorFlood, WithoutADialogTakesNoneEither) {
  expectPeerAlive();
  limitThePeer();
  const std::size_t before = openDescriptorsOfThePeer();
  const int null = open("/dev/null", O_RDONLY | O_CLOEXEC);
  for (int number = 0; number < messages; ++number) {
    sendDescriptors(null);
  }
  close(null);
  EXPECT_EQ(sendAndWait(peerSignature, echoEvent, "honest").reply, "honest");
  EXPECT_EQ(openDescriptorsOfThePeer(), before);
}

// What waits is copied out of its message: the order, the bytes and the way back must be the same.
TEST_F(DescriptorFlood, EventsThatWaitedComeWithTheirBytesAndAreAnswered) {
  ASSERT_EQ(sendOneWay(peerSignature, nestEvent, "500"), noErr);
  const int sealed = memoryFile(1000, allSeals);
  ASSERT_EQ(sendOneWay(peerSignature, noteEvent, "first"), noErr);
  ASSERT_EQ(sendOneWay(peerSignature, noteEvent, ""), noErr);
  EXPECT_EQ(echoFile(sealed).error, "");
  close(sealed);
  EXPECT_EQ(peerNotes(), "nest\nnested\nfirst\n\n");
}

}  // namespace
