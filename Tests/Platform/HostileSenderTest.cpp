// Programs of the same user that mean harm, or are broken, and programs of other users.
#include "RawSender.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>

#include <array>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <iterator>

using namespace platform_test;

namespace {

class HostileSender : public RawSender {
 protected:
  std::size_t openDescriptorsOfThePeer() const {
    const auto folder = "/proc/" + std::to_string(peer_->number()) + "/fd";
    return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(folder), {}));
  }

  static std::string busPath() {
    return std::string(std::getenv("DBUS_SESSION_BUS_ADDRESS")).substr(std::strlen("unix:path="));
  }

  // A stream to the bus daemon, with nothing said on it yet.
  static int connectedSocket() {
    const int stream = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    busPath().copy(address.sun_path, sizeof address.sun_path - 1);
    EXPECT_EQ(connect(stream, reinterpret_cast<sockaddr *>(&address), sizeof address), 0);
    return stream;
  }

  static void say(int stream, const std::string &bytes) {
    EXPECT_EQ(send(stream, bytes.data(), bytes.size(), MSG_NOSIGNAL),
              static_cast<ssize_t>(bytes.size()));
  }

  static std::string hear(int stream) {
    pollfd entry{stream, POLLIN, 0};
    std::array<char, 512> bytes{};
    if (poll(&entry, 1, 20'000) <= 0) {
      return {};
    }
    const ssize_t size = read(stream, bytes.data(), bytes.size());
    return size > 0 ? std::string(bytes.data(), static_cast<std::size_t>(size)) : std::string();
  }
};

// Whether the bus serves a stream that this process has connected.
bool isServed(int stream) {
  sd_bus *bus = nullptr;
  sd_bus_message *reply = nullptr;
  return sd_bus_new(&bus) >= 0 && sd_bus_set_fd(bus, stream, stream) >= 0 &&
         sd_bus_set_bus_client(bus, 1) >= 0 && sd_bus_start(bus) >= 0 &&
         sd_bus_call_method(bus, "org.freedesktop.DBus", "/org/freedesktop/DBus",
                            "org.freedesktop.DBus", "GetId", nullptr, &reply, "") >= 0;
}

// The exit status of a process that turns into that user and calls the bus: 0 where it is served, 1
// where not, 2 where it could not even connect. Its working directory lets it reach the socket
// through folders that are closed to that user: it must be the daemon that refuses.
int callAs(uid_t user, const std::filesystem::path &socketPath) {
  const pid_t process = fork();
  if (process == 0) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    socketPath.filename().string().copy(address.sun_path, sizeof address.sun_path - 1);
    const int stream = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const bool isConnected =
        chdir(socketPath.parent_path().c_str()) == 0 && setgid(user) == 0 && setuid(user) == 0 &&
        connect(stream, reinterpret_cast<sockaddr *>(&address), sizeof address) == 0;
    _exit(!isConnected ? 2 : isServed(stream) ? 0 : 1);
  }
  int status = 0;
  EXPECT_EQ(waitpid(process, &status, 0), process);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

TEST_F(HostileSender, OfAnotherUserIsTurnedAwayByTheBus) {
  if (geteuid() != 0) {
    GTEST_SKIP() << "only root can become another user";
  }
  const std::filesystem::path path = busPath();
  ASSERT_EQ(chmod(path.parent_path().c_str(), 0755), 0);
  ASSERT_EQ(chmod(path.c_str(), 0777), 0);
  constexpr uid_t nobody = 65534;
  EXPECT_EQ(callAs(nobody, path), 1);
  EXPECT_EQ(callAs(0, path), 0);
  expectPeerAlive();
}

TEST_F(HostileSender, HandsOverNoDescriptorThatIsNoSealedMemoryFile) {
  int pipeEnds[2];
  int streams[2];
  ASSERT_EQ(pipe2(pipeEnds, O_CLOEXEC), 0);
  ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, streams), 0);
  const int device = open("/dev/zero", O_RDONLY | O_CLOEXEC);
  const int folder = open("/", O_RDONLY | O_CLOEXEC);
  const int onDisk = open("/proc/self/exe", O_RDONLY | O_CLOEXEC);
  const int unsealed = memoryFile(2'000'000, 0);
  const int withoutAName = open("/dev/shm", O_TMPFILE | O_RDWR | O_CLOEXEC, 0600);
  for (const int descriptor :
       {pipeEnds[0], pipeEnds[1], streams[0], device, folder, onDisk, unsealed, withoutAName}) {
    EXPECT_EQ(echoFile(descriptor).error, errorPrefix + std::string("1702")) << descriptor;
  }
  for (const int descriptor : {pipeEnds[0], pipeEnds[1], streams[0], streams[1], device, folder,
                               onDisk, unsealed, withoutAName}) {
    close(descriptor);
  }
  expectPeerAlive();
}

TEST_F(HostileSender, LeavesNoDescriptorsBehind) {
  expectPeerAlive();
  const std::size_t before = openDescriptorsOfThePeer();
  const int sealed = memoryFile(100, allSeals);
  const int unsealed = memoryFile(100, 0);
  for (int round = 0; round < 50; ++round) {
    EXPECT_EQ(echoFile(sealed).error, "");
    EXPECT_EQ(echoFile(unsealed).error, errorPrefix + std::string("1702"));
  }
  close(sealed);
  close(unsealed);
  expectPeerAlive();
  EXPECT_EQ(openDescriptorsOfThePeer(), before);
}

TEST_F(HostileSender, ThatNeverReadsItsRepliesHoldsNobodyUp) {
  // 64 MiB of replies, far more than a socket holds.
  const std::string payload(512 * 1024, 'r');
  for (int number = 0; number < 128; ++number) {
    const Message message = newSend(echoEvent);
    sd_bus_message *request = message.get();
    ASSERT_GE(sd_bus_message_open_container(request, 'a', "(uuv)"), 0);
    ASSERT_GE(sd_bus_message_open_container(request, 'r', "uuv"), 0);
    ASSERT_GE(sd_bus_message_append(request, "uu", keyDirectObject, typeChar), 0);
    ASSERT_GE(sd_bus_message_open_container(request, 'v', "ay"), 0);
    ASSERT_GE(sd_bus_message_append_array(request, 'y', payload.data(), payload.size()), 0);
    for (int container = 0; container < 3; ++container) {
      ASSERT_GE(sd_bus_message_close_container(request), 0);
    }
    std::uint64_t cookie = 0;
    ASSERT_GE(sd_bus_send(client_.get(), request, &cookie), 0);
    ASSERT_GE(sd_bus_flush(client_.get()), 0);
  }
  expectPeerAlive();
  client_.reset();
  expectPeerAlive();
}

TEST_F(HostileSender, ThatStopsInTheMiddleOfAMessageHoldsNobodyUp) {
  const int stream = connectedSocket();
  std::string user;
  for (const char digit : std::to_string(geteuid())) {
    constexpr char hexadecimal[] = "0123456789abcdef";
    user += hexadecimal[digit >> 4];
    user += hexadecimal[digit & 15];
  }
  say(stream, std::string(1, '\0') + "AUTH EXTERNAL " + user + "\r\n");
  ASSERT_TRUE(hear(stream).starts_with("OK "));
  say(stream, "BEGIN\r\n");
  // The beginning of a method call with a body of 64 MiB that never comes.
  say(stream, std::string("l\1\0\1\0\0\0\4\1\0\0\0\x7F\0\0\0", 16));
  expectPeerAlive();
  close(stream);
  expectPeerAlive();
}

TEST_F(HostileSender, ThatSpeaksNoneOfTheBussLanguageIsCutOff) {
  const int stream = connectedSocket();
  say(stream, std::string(4096, '\xFF'));
  hear(stream);
  close(stream);
  expectPeerAlive();
}

}  // namespace
