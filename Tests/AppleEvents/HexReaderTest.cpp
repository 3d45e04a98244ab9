// Bytes that somebody wrote down, in all ways of writing them.
#include "Payloads.h"

#include <Tools/AppleEvents/Payloads/EventInput.h>
#include <Tools/AppleEvents/Payloads/EventKinds.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace appleevents;
using namespace appleevents_test;
using testing::HasSubstr;

const std::string bytes = "\0\0\0\0\0\7Smith 2001, p. 5\0\x7F\xFF"s;

std::string errorOf(std::string_view text) {
  const auto read = readHex(text);
  return read ? "read" : read.error();
}

TEST(HexReader, DigitsAreReadWithAndWithoutBlanks) {
  EXPECT_EQ(readHex("00 ff 41\n"),
            "\0\xFF"
            "A"s);
  EXPECT_EQ(readHex("00FF41"), readHex("00 ff 41"));
  EXPECT_EQ(readHex("0x00, 0xff, 0x41,"), readHex("00 ff 41"));
  EXPECT_EQ(readHex("<00ff41>"), readHex("00 ff 41"));
  EXPECT_EQ(readHex("{0x00,0xff,0x41}"), readHex("00 ff 41"));
  EXPECT_EQ(readHex("  00\tff\r\n\r\n 41\r\n"), readHex("00 ff 41"));
  EXPECT_EQ(readHex("0000 00000007"), "\0\0\0\0\0\7"s);
}

TEST(HexReader, WhatHexdumpPrintsIsRead) {
  EXPECT_EQ(
      readHex("00000000  00 00 00 00 00 07 53 6d  69 74 68 20 32 30 30 31  |......Smith 2001|\n"
              "00000010  2c 20 70 2e 20 35 00 7f  ff                       |, p. 5...|\n"
              "00000019\n"),
      bytes);
}

TEST(HexReader, WhatXxdPrintsIsRead) {
  EXPECT_EQ(readHex("00000000: 0000 0000 0007 536d 6974 6820 3230 3031  ......Smith 2001\n"
                    "00000010: 2c20 702e 2035 007f ff                   , p. 5...\n"),
            bytes);
  // Characters that look like digits are no bytes.
  EXPECT_EQ(readHex("00000000: 6162 6364 3132                           abcd12\n"), "abcd12");
}

TEST(HexReader, WhatOdPrintsIsRead) {
  EXPECT_EQ(readHex("000000 00 00 00 00 00 07 53 6d 69 74 68 20 32 30 30 31  >......Smith 2001<\n"
                    "000010 2c 20 70 2e 20 35 00 7f ff                       >, p. 5...<\n"
                    "000019\n"),
            bytes);
}

TEST(HexReader, LinesThatRepeatAreFilledIn) {
  const std::string line =
      " 61 61 61 61 61 61 61 61  61 61 61 61 61 61 61 61  |aaaaaaaaaaaaaaaa|\n";
  EXPECT_EQ(readHex("00000000 " + line + "*\n00000040  62 |b|\n00000041\n"),
            std::string(64, 'a') + 'b');
  EXPECT_EQ(readHex("00000000 " + line + "*\n00000040\n"), std::string(64, 'a'));
  EXPECT_THAT(errorOf("00000000 " + line + "*\n00000041\n"), HasSubstr("line 3: the offset is"));
  EXPECT_THAT(errorOf("00000000 " + line + "*\n"), HasSubstr("how often"));
  EXPECT_THAT(errorOf("00000000 " + line + "*\nffffffff  62\n"), HasSubstr("line 3: the offset"));
  EXPECT_THAT(errorOf("*\n"), HasSubstr("repeats no line"));
}

TEST(HexReader, RemarksBehindTheBytesAreNoBytes) {
  EXPECT_EQ(readHex("41 00        A \"verified A\"\n42 00  ab cd ef, it says\n"), "A\0B\0"s);
  EXPECT_EQ(readHex("41 00  42 00\n"), "A\0B\0"s);
}

TEST(HexReader, WhatIsNoHexadecimalIsSaidInOneLine) {
  EXPECT_EQ(errorOf("00 0g"), "line 1: \"0g\" is not hexadecimal");
  EXPECT_EQ(errorOf("00\n0"), "line 2: \"0\" has an odd number of digits");
  EXPECT_EQ(errorOf("00000000: 00 1\n"), "line 1: \"1\" is half a byte");
  EXPECT_EQ(errorOf("00000010  00 01\n"),
            "line 1: the offset is 00000010, but 0 bytes stand before it");
  EXPECT_EQ(errorOf("zz: 00 01\n"), "line 1: \"zz:\" is no offset");
  EXPECT_THAT(errorOf("{length = 45, bytes = 0x0000 ... 0001}"), HasSubstr("line 1: "));
  EXPECT_EQ(errorOf("0x0000 00...01"), "line 1: bytes were left out at \"00...01\"");
  EXPECT_THAT(errorOf("0000000 0000 0700\n"), HasSubstr("hexdump -C"));
  EXPECT_EQ(errorOf(" \n"), "there are no bytes in it");
}

const std::string log = R"(AE2000 (968): Received an event:
------oo start of event oo------
{ 1 } 'aevt':  mLeL/FNDN (ppc ){
          return id: 22609967 (0x159002f)
     transaction id: 0 (0x0)
  target:
    { 1 } 'psn ':  8 bytes {
      { 0x0, 0x60001 } (Dock)
    }
  optional attributes:
    { 1 } 'reco':  - 1 items {
      key '----' -
        { 1 } 'keyw':  4 bytes {
          'frnt'
        }
    }

  event data:
    { 1 } 'aevt':  - 1 items {
      key '----' - 
        { 1 } 'TEXT':  8 bytes {
          "Smith#A"
        }
    }
}
------oo  end of event  oo------
------oo start of event oo------
{ 1 } 'aevt':  mLeL/FIND (****){
  event data:
    < empty record >
}
------oo  end of event  oo------
------oo start of event oo------
{ 1 } 'aevt':  mLeL/Rmcr (****){
  event data:
    { 1 } 'aevt':  - 1 items {
      key '----' -
        { 1 } 'TEXT':  6 bytes {
          0000: 0000 0000 0007                           ......
        }
    }
}
)";

TEST(EventInput, ALogOfMacOSHasItsEvents) {
  const auto events = readEventInput(log, InputForm::asFound);
  ASSERT_TRUE(events) << events.error();
  ASSERT_EQ(events->size(), 3u);
  EXPECT_EQ(events->at(0).eventClass, readCode("mLeL"));
  EXPECT_EQ(events->at(0).eventID, readCode("FNDN"));
  EXPECT_EQ(events->at(0).payload, "Smith#A\0"s);
  EXPECT_EQ(events->at(1).eventID, readCode("FIND"));
  EXPECT_FALSE(events->at(1).payload);
  EXPECT_EQ(events->at(2).eventID, readCode("Rmcr"));
  EXPECT_EQ(events->at(2).payload, "\0\0\0\0\0\7"s);
  EXPECT_EQ(events->at(2).gap, "");
}

TEST(EventInput, ALogThatShowsLessThanThereWasSaysSo) {
  std::string shorter = log;
  shorter.replace(shorter.find("8 bytes {\n          \""), 7, "60 bytes");
  const auto events = readEventInput(shorter, InputForm::asFound);
  ASSERT_TRUE(events) << events.error();
  EXPECT_EQ(events->at(0).gap, "the log shows 7 of 60 bytes");
}

TEST(EventInput, ALogThatIsCutShortIsRefused) {
  const auto events = readEventInput(log.substr(0, log.find("\"Smith")), InputForm::asFound);
  ASSERT_FALSE(events);
  EXPECT_EQ(events.error(), "event 1 of the log: it is cut short");
}

TEST(EventInput, AppleScriptsWaysOfWritingAreRead) {
  for (const std::string_view text :
       {"«event mLeLFNDN» given «class ----»:«data TEXT536D6974682341 00»"sv,
        "'mLeL'\\'FNDN'{ '----':'TEXT'($536D697468234100$) }"sv,
        "mLeL\\FNDN{ '----':TEXT($536D697468234100$), &csig:65536 }"sv}) {
    const auto events = readEventInput(text, InputForm::asFound);
    ASSERT_TRUE(events) << events.error();
    EXPECT_EQ(events->at(0).eventID, readCode("FNDN")) << text;
    EXPECT_EQ(events->at(0).payload, "Smith#A\0"s) << text;
  }
}

TEST(EventInput, BytesAreKnownByTheirControlCharacters) {
  EXPECT_EQ(readEventInput("Smith\0"sv, InputForm::asFound)->at(0).payload, "Smith\0"s);
  EXPECT_EQ(readEventInput("4142", InputForm::asFound)->at(0).payload, "AB");
  EXPECT_EQ(readEventInput("4142", InputForm::bytes)->at(0).payload, "4142");
  EXPECT_FALSE(readEventInput("Smith", InputForm::asFound));
  EXPECT_FALSE(readEventInput("Smith\0"sv, InputForm::hexadecimal));
}

}  // namespace
