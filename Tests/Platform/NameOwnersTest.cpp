#include "BusFixture.h"

#include <Platform/Bus/BusConnection.h>
#include <Platform/Bus/BusNames.h>
#include <Platform/Bus/NameOwners.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

using namespace platform_test;
using platform::busName;

namespace {

class NameOwners : public BusFixture {
 protected:
  NameOwners() {
    sd_bus *bus = nullptr;
    EXPECT_GE(sd_bus_open_user(&bus), 0);
    client_.reset(bus);
    owners_ = std::make_unique<platform::NameOwners>(bus);
  }

  // A connection numbers its messages: the number of the next one.
  std::uint64_t nextMessage() {
    std::uint64_t cookie = 0;
    sd_bus_message *message = nullptr;
    EXPECT_GE(sd_bus_message_new_signal(client_.get(), &message, "/a", "a.b", "C"), 0);
    const platform::Message signal = platform::adoptMessage(message);
    EXPECT_GE(sd_bus_send(client_.get(), message, &cookie), 0);
    return cookie;
  }

  // Takes in what arrives, until the condition holds or for some seconds.
  bool takeInUntil(const std::function<bool()> &condition) {
    for (int round = 0; round < 2000 && !condition(); ++round) {
      while (sd_bus_process(client_.get(), nullptr) > 0) {
      }
      if (!condition()) {
        sd_bus_wait(client_.get(), 5000);
      }
    }
    return condition();
  }

  std::vector<std::string> names() {
    std::vector<std::string> found;
    for (auto name = owners_->nameBehind(""); name; name = owners_->nameBehind(*name)) {
      found.push_back(*name);
    }
    return found;
  }

  bool peerIsForgotten() {
    return takeInUntil([this] { return !owners_->find(busName(peerSignature)); });
  }

  platform::Connection client_;
  std::unique_ptr<platform::NameOwners> owners_;
};

TEST_F(NameOwners, KnowTheProcess) {
  const auto owner = owners_->find(busName(peerSignature));
  ASSERT_TRUE(owner);
  EXPECT_EQ(owner->processNumber, static_cast<std::uint32_t>(peer_->number()));
  EXPECT_TRUE(owner->connection.starts_with(":"));
}

TEST_F(NameOwners, AreAskedForOnce) {
  ASSERT_TRUE(owners_->find(busName(peerSignature)));
  const std::uint64_t before = nextMessage();
  ASSERT_TRUE(owners_->find(busName(peerSignature)));
  EXPECT_EQ(nextMessage(), before + 1);
}

TEST_F(NameOwners, AreAskedForEachTimeWhereThereIsNone) {
  ASSERT_FALSE(owners_->find(busName(testSignature)));
  ASSERT_EQ(platform::startReceivingAppleEvents(testSignature, nullptr), noErr);
  EXPECT_TRUE(owners_->find(busName(testSignature)));
}

TEST_F(NameOwners, AreForgottenWhenTheProcessEnds) {
  ASSERT_TRUE(owners_->find(busName(peerSignature)));
  peer_->end();
  EXPECT_TRUE(peerIsForgotten());
}

TEST_F(NameOwners, AreTheNewOnesWhenAnotherProcessFollows) {
  ASSERT_TRUE(owners_->find(busName(peerSignature)));
  peer_->end();
  ASSERT_TRUE(peerIsForgotten());
  startPeer();
  const auto owner = owners_->find(busName(peerSignature));
  ASSERT_TRUE(owner);
  EXPECT_EQ(owner->processNumber, static_cast<std::uint32_t>(peer_->number()));
}

TEST_F(NameOwners, NamesAreListedOnceAndFollowTheProcesses) {
  using Names = std::vector<std::string>;
  EXPECT_EQ(names(), Names{busName(peerSignature)});
  const std::uint64_t before = nextMessage();
  EXPECT_EQ(names(), Names{busName(peerSignature)});
  EXPECT_EQ(nextMessage(), before + 1);
  ASSERT_EQ(platform::startReceivingAppleEvents(testSignature, nullptr), noErr);
  peer_->end();
  EXPECT_TRUE(takeInUntil([this] { return names() == Names{busName(testSignature)}; }));
}

TEST_F(NameOwners, NamesAreRenewedWhenAskedFor) {
  EXPECT_EQ(names().size(), 1u);
  ASSERT_EQ(platform::startReceivingAppleEvents(testSignature, nullptr), noErr);
  // The bus's word of it has not been read.
  EXPECT_EQ(names().size(), 1u);
  EXPECT_EQ(owners_->renewNames(), noErr);
  EXPECT_EQ(names().size(), 2u);
}

}  // namespace
