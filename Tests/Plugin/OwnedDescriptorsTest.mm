// What the Apple Event functions give to the agent is given back to them, also where a step fails.

#import "Support/AgentTest.h"

#include <Tests/Support/LiveBytes.h>

namespace plugin_test {
namespace {

constexpr int sends = 2000;
// A descriptor that is kept takes more; what Cocoa keeps for itself meanwhile takes less.
constexpr std::size_t bytesOfASend = 16;

class OwnedDescriptors : public AgentTest {
 protected:
  void send(uint64_t size) {
    NSAutoreleasePool *pool = [[NSAutoreleasePool alloc] init];
    [agent_ sendAppleEventWithClass:code("mLeL") eventID:code("evnt") buffer:"a" bufferSize:size];
    [pool drain];
    carrier_.sent.clear();
    calls().clear();
  }

  // By which so many sends let the heap grow.
  std::ptrdiff_t growthBySends(uint64_t size) {
    for (int turn = 0; turn < 10; ++turn) {
      send(size);
    }
    const std::size_t before = test_support::liveBytes();
    for (int turn = 0; turn < sends; ++turn) {
      send(size);
    }
    return static_cast<std::ptrdiff_t>(test_support::liveBytes() - before);
  }
};

constexpr std::ptrdiff_t mostGrowth = sends * bytesOfASend;

TEST_F(OwnedDescriptors, AreDisposedOfAfterASend) { EXPECT_LT(growthBySends(1), mostGrowth); }

TEST_F(OwnedDescriptors, AreDisposedOfAfterASendThatFails) {
  carrier_.sendResult = std::unexpected(OSStatus{procNotFound});
  EXPECT_LT(growthBySends(1), mostGrowth);
}

TEST_F(OwnedDescriptors, AreDisposedOfWhereThePayloadCannotBePut) {
  EXPECT_LT(growthBySends(static_cast<uint64_t>(-1)), mostGrowth);
  EXPECT_TRUE(carrier_.sent.empty());
}

}  // namespace
}  // namespace plugin_test
