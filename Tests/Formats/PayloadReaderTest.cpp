#include "Payloads.h"

#include <Formats/PayloadReader.h>
#include <Tests/Support/AllStrings.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

namespace {

using formats::PayloadReader;

TEST(PayloadReader, ReadsBigEndianIntegersAtAnyOffset) {
  const std::string payload = fromHex("7F 01 02 FF FE FD FC");
  PayloadReader reader(payload);
  EXPECT_EQ(reader.readUInt8(), 0x7F);
  EXPECT_EQ(reader.readUInt16(), 0x0102);
  EXPECT_EQ(reader.readUInt32(), 0xFFFEFDFCu);
  EXPECT_TRUE(reader.atEnd());
  EXPECT_EQ(reader.position(), 7u);
}

TEST(PayloadReader, IntegersPastTheEndAreZero) {
  PayloadReader reader("");
  EXPECT_TRUE(reader.atEnd());
  EXPECT_EQ(reader.readUInt8(), 0);
  EXPECT_EQ(reader.readUInt16(), 0);
  EXPECT_EQ(reader.readUInt32(), 0u);
}

TEST(PayloadReader, IntegerCutShortReadsAsIfNULsFollowed) {
  PayloadReader reader("\x01\x02\x03");
  EXPECT_EQ(reader.readUInt32(), 0x01020300u);
  EXPECT_TRUE(reader.atEnd());
  EXPECT_EQ(reader.position(), 4u);
}

TEST(PayloadReader, StringEndsAtItsNULAndThePositionMovesPastIt) {
  PayloadReader reader("ab\0cd\0"sv);
  EXPECT_EQ(reader.readString(), "ab");
  EXPECT_EQ(reader.position(), 3u);
  EXPECT_EQ(reader.readString(), "cd");
  EXPECT_TRUE(reader.atEnd());
}

TEST(PayloadReader, EmptyStringTakesOneByte) {
  PayloadReader reader("\0\0x"sv);
  EXPECT_EQ(reader.readString(), "");
  EXPECT_EQ(reader.readString(), "");
  EXPECT_EQ(reader.readUInt8(), 'x');
}

TEST(PayloadReader, StringWithoutItsNULEndsWithTheData) {
  PayloadReader reader("ab");
  EXPECT_EQ(reader.readString(), "ab");
  EXPECT_TRUE(reader.atEnd());
  EXPECT_EQ(reader.position(), 3u);
}

TEST(PayloadReader, StringsPastTheEndAreEmpty) {
  PayloadReader reader("");
  EXPECT_EQ(reader.readString(), "");
  EXPECT_EQ(reader.readString(), "");
}

TEST(PayloadReader, SkippingPastTheEndNeverComesBackToTheData) {
  PayloadReader reader("abc");
  constexpr std::size_t farAway = std::numeric_limits<std::size_t>::max();
  reader.skip(2);
  reader.skip(farAway);
  EXPECT_TRUE(reader.atEnd());
  EXPECT_EQ(reader.position(), farAway);
  EXPECT_EQ(reader.readUInt32(), 0u);
  EXPECT_EQ(reader.readString(), "");
  EXPECT_EQ(reader.position(), farAway);
}

// The rule itself, spelt out: the payload with endless NUL bytes behind it.
class EndlessPayload {
 public:
  explicit EndlessPayload(std::string bytes) : bytes_(std::move(bytes)) {}
  std::uint32_t readInteger(int width) {
    std::uint32_t value = 0;
    for (int index = 0; index < width; ++index) {
      value = value * 256 + static_cast<unsigned char>(byteAt(position++));
    }
    return value;
  }
  std::string readString() {
    std::string text;
    while (byteAt(position) != '\0') {
      text += byteAt(position++);
    }
    ++position;
    return text;
  }
  std::size_t position = 0;

 private:
  char byteAt(std::size_t index) const { return index < bytes_.size() ? bytes_[index] : '\0'; }
  std::string bytes_;
};

bool readsTheSame(char operation, PayloadReader &reader, EndlessPayload &expected) {
  switch (operation) {
    case '1':
      return reader.readUInt8() == expected.readInteger(1);
    case '2':
      return reader.readUInt16() == expected.readInteger(2);
    case '4':
      return reader.readUInt32() == expected.readInteger(4);
    case 's':
      return reader.readString() == expected.readString();
    default:
      reader.skip(3);
      expected.position += 3;
      return true;
  }
}

TEST(PayloadReader, ReadsEveryShortPayloadAsIfEndlessNULsFollowed) {
  std::vector<std::string> operationLists;
  forEachString<char>({"1", "2", "4", "s", "-"}, 3,
                      [&](const std::string &operations) { operationLists.push_back(operations); });
  GuardedBytes memory(8);
  forEachString<char>({"\0"s, "a", "\xFF"}, 6, [&](const std::string &payload) {
    for (const std::string &operations : operationLists) {
      PayloadReader reader(memory.hold(payload));
      EndlessPayload expected(payload);
      for (const char operation : operations) {
        ASSERT_TRUE(readsTheSame(operation, reader, expected))
            << testing::PrintToString(payload) << " by " << operations;
        ASSERT_EQ(reader.position(), expected.position);
        ASSERT_EQ(reader.atEnd(), expected.position >= payload.size());
      }
    }
  });
}

}  // namespace
