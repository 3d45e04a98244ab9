// Bytes from the host, through the real commands: every answer cut short at every byte and with
// every bit flipped, and answers of other kinds. The next run works.
#include "Support/HostileReply.h"

#include <Tests/Support/Effort.h>

namespace mellel::commands {
namespace {

namespace request = formats::request;
using mellel_test::Answer;
using mellel_test::Attacked;
using mellel_test::HostileReply;
using mellel_test::oldCopy;
using mellel_test::Ran;

TEST_F(HostileReply, GoodAnswersDoWhatTheySay) {
  for (const Attacked &target : attacked()) {
    expectGoodRun(target);
  }
  const Ran ran = run(formatting(false));
  EXPECT_EQ(ran.output, "wrote: " + output() +
                            "\nstyle: Stylé\nformatted: 2 of 3 citations\n"
                            "not formatted: {Nobody}\n"
                            "bibliography: 2 entries in place of {bibliography}\n");
  const auto shown = mellel_test::slowText(ran.copy);
  ASSERT_TRUE(shown);
  EXPECT_EQ(mellel_test::plainText(*shown),
            "First (Sm 2–\uF0B7"
            "3 {x}, é\u2028y) then é{Nobody} and last.¶A. T.\téb¶B.¶End.¶");
}

TEST_F(HostileReply, EveryTruncationIsRefusedOrTakenForWhatItSays) {
  for (const Attacked &target : attacked()) {
    for (std::size_t size = 0; size < sizeOfGood(target); ++size) {
      expectRight(
          target, [size](Answer &sent) { sent.payload = sent.payload->substr(0, size); },
          "cut at " + std::to_string(size));
      expectGoodRun(target);
    }
  }
}

TEST_F(HostileReply, EveryFlippedBitIsRefusedOrTakenForWhatItSays) {
  for (const Attacked &target : attacked()) {
    for (std::size_t bit = 0; bit < sizeOfGood(target) * 8; bit += test_support::effort(1, 7)) {
      const auto flip = [bit](Answer &sent) {
        char &byte = (*sent.payload)[bit / 8];
        byte = static_cast<char>(byte ^ 1 << bit % 8);
      };
      expectRight(target, flip, "bit " + std::to_string(bit) + " flipped");
      if (bit % 8 == 7) {
        expectGoodRun(target);
      }
    }
  }
}

TEST_F(HostileReply, EmptyDataAndBytesInExcessAreRefused) {
  for (const Attacked &target : attacked()) {
    expectRight(target, [](Answer &sent) { sent.payload = ""; }, "empty");
    expectRight(target, [](Answer &sent) { *sent.payload += '\0'; }, "with a NUL more");
    expectRight(target, [](Answer &sent) { *sent.payload += *sent.payload; }, "twice in one");
    expectGoodRun(target);
  }
}

TEST_F(HostileReply, AbsentDataIsRefusedAndInALiveReplyMeansCancelled) {
  for (const Attacked &target : attacked()) {
    host_.answer(target.request, [](Answer good, std::uint32_t) {
      good.payload.reset();
      return std::vector<Answer>{good};
    });
    const Ran ran = run(target.command);
    if (target.request == request::liveBibliography) {
      EXPECT_EQ(ran, (Ran{1, "cancelled in Korvo", "", oldCopy}));
    } else {
      EXPECT_EQ(faultOfRefusal(ran), "") << target.name;
    }
    expectGoodRun(target);
  }
}

TEST_F(HostileReply, TheDescriptorTypeMakesNoDifference) {
  for (const Attacked &target : attacked()) {
    using formats::fourCharacterCode;
    for (const DescType type :
         {fourCharacterCode("TEXT"), fourCharacterCode("utf8"), fourCharacterCode("utxt"),
          fourCharacterCode("long"), fourCharacterCode("bool"), fourCharacterCode("aevt"),
          fourCharacterCode("null"), fourCharacterCode("reco"), fourCharacterCode("list"),
          fourCharacterCode("obj "), fourCharacterCode("****"), DescType{0},
          DescType{0xFFFFFFFF}}) {
      expectRight(target, [type](Answer &sent) { sent.type = type; }, std::to_string(type));
    }
    expectGoodRun(target);
  }
}

TEST_F(HostileReply, DataFullOfOneByteIsRefused) {
  const auto expectRefused = [this](const Attacked &target, std::size_t size, char byte) {
    expectRight(
        target, [=](Answer &sent) { sent.payload = std::string(size, byte); },
        "full of " + std::to_string(byte));
  };
  for (const Attacked &target : attacked()) {
    for (const char byte : {'\0', '\xFF'}) {
      expectRefused(target, 1 << 20, byte);
    }
    for (const char byte : {'a', '{', '}', '\\', '\x1B'}) {
      expectRefused(target, 1 << 14, byte);
    }
    expectGoodRun(target);
  }
}

}  // namespace
}  // namespace mellel::commands
