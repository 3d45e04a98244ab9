#include "Payloads.h"

#include <Formats/PayloadWriter.h>
#include <Formats/Unicode.h>
#include <Tests/Support/AllStrings.h>

#include <gtest/gtest.h>

#include <string>

namespace {

using formats::PayloadWriter;
using formats::sizeOfString;

void writeOneOfEach(PayloadWriter &writer) {
  writer.writeUInt16(0x0102);
  writer.writeUInt32(0xFFFEFDFC);
  writer.writeBytes("a\0b"sv);
  writer.writeString(u"é水\U0001F600");
  writer.writeStringUTF8("xy");
}

const std::string oneOfEach =
    fromHex("01 02 FF FE FD FC 61 00 62 C3 A9 E6 B0 B4 F0 9F 98 80 00") + "xy\0"s;

TEST(PayloadWriter, WritesBigEndianIntegersAndTerminatedStrings) {
  std::string buffer(oneOfEach.size(), '?');
  PayloadWriter writer(buffer);
  writeOneOfEach(writer);
  EXPECT_EQ(buffer, oneOfEach);
  EXPECT_EQ(writer.written(), oneOfEach.size());
  EXPECT_EQ(writer.stored(), oneOfEach.size());
}

TEST(PayloadWriter, FillsABufferThatIsTooSmallToItsEndAndKeepsCounting) {
  GuardedBytes memory(oneOfEach.size());
  for (std::size_t size = 0; size < oneOfEach.size(); ++size) {
    PayloadWriter writer(memory.room(size));
    writeOneOfEach(writer);
    const auto filled = memory.room(size);
    EXPECT_EQ(std::string(filled.begin(), filled.end()), oneOfEach.substr(0, size));
    EXPECT_EQ(writer.written(), oneOfEach.size());
    EXPECT_EQ(writer.stored(), size);
  }
}

TEST(PayloadWriter, LeavesTheRestOfALargerBufferAlone) {
  std::string buffer(4, '?');
  PayloadWriter writer(buffer);
  writer.writeUInt16(0x4142);
  EXPECT_EQ(buffer, "AB??");
  EXPECT_EQ(writer.stored(), 2u);
}

TEST(PayloadWriter, NothingWrittenIsNothingCounted) {
  PayloadWriter writer({});
  writer.writeBytes({});
  EXPECT_EQ(writer.written(), 0u);
  writer.writeString(u"");
  EXPECT_EQ(writer.written(), 1u);
  EXPECT_EQ(writer.stored(), 0u);
}

TEST(PayloadWriter, NULInsideATextEndsIt) {
  std::string buffer(8, '?');
  PayloadWriter writer(buffer);
  writer.writeString(u"a\0b"s);
  writer.writeStringUTF8("c\0d"sv);
  EXPECT_EQ(buffer, "a\0c\0????"s);
  EXPECT_EQ(sizeOfString(u"a\0b"s), 2u);
}

TEST(PayloadWriter, SizeOfAStringCountsUTF8BytesAndTheNUL) {
  EXPECT_EQ(sizeOfString(u""), 1u);
  EXPECT_EQ(sizeOfString(u"abc"), 4u);
  EXPECT_EQ(sizeOfString(u"é"), 3u);
  EXPECT_EQ(sizeOfString(u"水"), 4u);
  EXPECT_EQ(sizeOfString(u"\U0001F600"), 5u);
}

TEST(PayloadWriter, EveryShortTextTakesExactlyTheComputedSize) {
  GuardedBytes memory(64);
  const std::vector<std::u16string> letters = {u"a", u"é", u"水", u"\xD83D", u"\xDE00", u"\0"s};
  forEachString<char16_t>(letters, 6, [&](const std::u16string &text) {
    const std::size_t size = sizeOfString(text);
    const auto room = memory.room(size);
    PayloadWriter writer(room);
    writer.writeString(text);
    ASSERT_EQ(writer.written(), size);
    const std::u16string upToNUL = text.substr(0, text.find(u'\0'));
    ASSERT_EQ(std::string(room.begin(), room.end()), formats::encodeUTF8(upToNUL) + '\0');
  });
}

}  // namespace
