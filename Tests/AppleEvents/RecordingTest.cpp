// The lines of a recording: written, read, and refused when anybody touched them.
#include "Payloads.h"

#include <Tools/AppleEvents/Payloads/EventKinds.h>
#include <Tools/AppleEvents/Payloads/Explanation.h>
#include <Tools/AppleEvents/Recordings/LookAlikes.h>
#include <Tools/AppleEvents/Recordings/RecordingText.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace appleevents;
using namespace appleevents_test;
using testing::HasSubstr;
using testing::Not;
using Kind = RecordedMessage::Kind;
using std::chrono::microseconds;

const formats::FourCharacterCode mellel = readCode("mLeL").value();
const formats::FourCharacterCode korvo = readCode("KRVO").value();

RecordedMessage event(std::size_t number, const std::string &eventID, const std::string &bytes,
                      bool isRequest = true) {
  return {.kind = Kind::event,
          .number = number,
          .from = isRequest ? mellel : korvo,
          .to = isRequest ? korvo : mellel,
          .eventClass = mellel,
          .eventID = readCode(eventID).value(),
          .wantsReply = isRequest,
          .time = microseconds(number * 1'000'001),
          .parameters = {{readCode("----").value(), readCode("TEXT").value(), bytes}}};
}

Recording recording() {
  Recording made;
  made.messages = {
      event(1, "PRSQ", examples().at("preliminary-scan")),
      event(2, "PRSR", examples().at("citation-resolution"), false),
      {.kind = Kind::activation, .from = korvo, .to = mellel, .time = microseconds(0)},
      {.kind = Kind::reply, .number = 1},
      event(3, "LVBQ", examples().at("final-scan")),
      {.kind = Kind::reply,
       .number = 3,
       .parameters = {{readCode("----").value(), readCode("TEXT").value(),
                       examples().at("scan-reply"), true}}},
      event(4, "IMHR", ""),
      {.kind = Kind::error, .number = 4, .status = -1708},
  };
  made.messages[6].from = 0;
  return made;
}

std::string errorOf(const std::string &text) {
  const auto read = readRecording(text);
  return read ? "read" : read.error();
}

std::string edited(const std::string &from, const std::string &to) {
  std::string text = linesOf(recording());
  EXPECT_NE(text.find(from), std::string::npos) << from;
  return text.replace(text.find(from), from.size(), to);
}

TEST(Recording, WhatIsWrittenIsRead) {
  Recording made = recording();
  EXPECT_EQ(readRecording(linesOf(made)), made);
  made.isAnonymous = true;
  EXPECT_EQ(readRecording(linesOf(made)), made);
  EXPECT_EQ(readRecording(linesOf(Recording())), Recording());
}

TEST(Recording, AnyBytesAreWrittenAndRead) {
  std::string bytes;
  for (int index = 0; index < 2000; ++index) {
    bytes += static_cast<char>(index * index >> 3);
    Recording made;
    made.messages = {event(1, "FNDN", bytes)};
    ASSERT_EQ(readRecording(linesOf(made)), made) << index;
  }
}

TEST(Recording, TheLinesAreTheDocumentedOnes) {
  Recording made;
  made.messages = {event(1, "Rmcr", "\0\0\0\0\0\7Smith\0Jones 1999\0"s)};
  EXPECT_EQ(linesOf(made),
            "appleevents recording 1\n"
            "\n"
            "event 1: 'mLeL' to 'KRVO', 'mLeL' 'Rmcr', wants a reply\n"
            "time 1.000001\n"
            "parameter '----' 'TEXT', 23 bytes, sum DFA67155\n"
            "  00 00 00 00 00 07 53 6D 69 74 68 00              ......Smith.\n"
            "  4A 6F 6E 65 73 20 31 39 39 39 00                 Jones 1999.\n"
            "\n"
            "end: 1 events, 1 messages, sum BF0E641C\n");
}

TEST(Recording, TheExampleOfThePageIsOne) {
  const std::string page = test_support::readFile(RECORDINGS_PAGE);
  const std::size_t start = page.find("```\nappleevents recording") + 4;
  const auto read = readRecording(page.substr(start, page.find("```", start) - start));
  ASSERT_TRUE(read) << read.error();
  EXPECT_EQ(read->messages.size(), 3u);
}

// A byte that is changed anywhere is noticed. Times are no part of what is compared.
TEST(Recording, AnEditAnywhereIsNoticed) {
  const std::string text = linesOf(recording());
  for (std::size_t position = 0; position < text.size(); ++position) {
    const std::size_t line = text.rfind('\n', position == 0 ? 0 : position - 1) + 1;
    if (text.substr(line).starts_with("time ") && position > line + 4) {
      continue;
    }
    for (const char other : {'0', '1', ' ', '\n', 'x', static_cast<char>(text[position] ^ 1)}) {
      std::string touched = text;
      touched[position] = other;
      if (touched != text) {
        ASSERT_NE(errorOf(touched), "read")
            << "at " << position << ": " << touched.substr(line, 60);
      }
    }
    std::string shorter = text;
    shorter.erase(position, 1);
    ASSERT_NE(errorOf(shorter), "read") << "without " << position;
  }
}

TEST(Recording, OneThatIsCutShortIsRefusedWhereverItEnds) {
  const std::string text = linesOf(recording());
  for (std::size_t size = 0; size < text.size(); ++size) {
    const std::string error = errorOf(text.substr(0, size));
    ASSERT_NE(error, "read") << size;
    ASSERT_EQ(error.find('\n'), std::string::npos);
  }
  EXPECT_EQ(errorOf(text.substr(0, text.size() - 40)), "it is cut short: its last line is missing");
}

TEST(Recording, WhatIsWrongIsSaidInOneLine) {
  EXPECT_EQ(errorOf(""), "it is no recording of appleevents");
  EXPECT_EQ(errorOf("appleevents recording 2\n\nend\n"),
            "it is a recording of version 2, and this program reads version 1");
  EXPECT_EQ(errorOf(edited("event 2:", "event 7:")), "line 10: this should be event 2");
  EXPECT_EQ(errorOf(edited("reply to 1\n", "reply to 2\n")), "line 26: no event waits for this");
  EXPECT_EQ(errorOf(edited("'mLeL' to 'KRVO', 'mLeL' 'PRSQ'", "'mLeL' to KRVO, 'mLeL' 'PRSQ'")),
            "line 3: no recording has this line here: it was edited or is damaged");
  EXPECT_EQ(
      errorOf(edited("  00 00 00 00 00 07 00 00 00 02 53", "  00 00 00 00 00 08 00 00 00 02 53")),
      "line 5: the bytes of this parameter are not those that were recorded");
  EXPECT_EQ(errorOf(edited("......Smith.", "......Smyth.")),
            "line 6: no recording has this line here: it was edited or is damaged");
  EXPECT_THAT(errorOf(edited("'mLeL' 'PRSQ'", "'mLeL' 'SCNQ'")),
              HasSubstr("something above was edited"));
  EXPECT_THAT(errorOf(linesOf(recording()) + "\n"), HasSubstr("something behind the end"));
  EXPECT_EQ(errorOf(edited("time 1.000001", "time 1.00001")),
            "line 4: no recording has this line here: it was edited or is damaged");
}

TEST(LookAlikes, NothingOfTheAuthorsWordsIsLeft) {
  LookAlikes lookAlikes;
  Recording made = recording();
  for (RecordedMessage &message : made.messages) {
    lookAlikes.replaceIn(message);
  }
  const std::string text = linesOf(made);
  for (const char *const word : {"Smith", "ller"}) {
    EXPECT_THAT(text, Not(HasSubstr(word)));
  }
  for (std::size_t index = 0; index < made.messages.size(); ++index) {
    const RecordedMessage before = recording().messages[index];
    EXPECT_EQ(made.messages[index].directObject().value_or("").size(),
              before.directObject().value_or("").size());
  }
}

TEST(LookAlikes, WhatIsLeftIsStillARightConversation) {
  LookAlikes lookAlikes;
  for (RecordedMessage message : recording().messages) {
    lookAlikes.replaceIn(message);
    if (message.kind == Kind::event) {
      const auto kind = findEventKind(message.eventClass, message.eventID, false).value();
      const Explanation explanation = explain(kind, message.directObject());
      EXPECT_EQ(explanation.isBroken(), message.number == 4) << kind.name;
    }
  }
}

std::string lookAlike(const std::string &eventID, const std::string &bytes) {
  LookAlikes lookAlikes;
  RecordedMessage message = event(1, eventID, bytes);
  lookAlikes.replaceIn(message);
  return std::string(message.directObject().value_or(""));
}

TEST(LookAlikes, AWordHasOneLookAlikeOfItsShapeAndTheSyntaxStays) {
  const std::string replaced =
      lookAlike("FNDN", "!%\\see \\Müller 2001\\, Müller\\#SMI2001@45–47\0"s);
  const std::string pattern =
      "^!%\\\\[a-z]{3} \\\\[A-Z][^a-z][^a-z][a-z]{4} [0-9]{4}\\\\, [A-Z][^a-z][^a-z][a-z]{4}\\\\"
      "#[A-Z]{3}[0-9]{4}@[0-9]{2}–[0-9]{2}$";
  EXPECT_THAT(replaced.c_str(), testing::MatchesRegex(pattern));
  const std::size_t first = replaced.find('\\', 3) + 1;
  const std::size_t second = replaced.find("\\, ") + 3;
  EXPECT_EQ(replaced.substr(first, 7), replaced.substr(second, 7));
  EXPECT_EQ(lookAlike("FNDN", "verified A\0"s).substr(0, 9), "verified ");
}

TEST(LookAlikes, ControlWordsStayAndEscapedLettersDoNot) {
  const auto reply = [](const std::string &text) {
    return "\0\0\0\0\0\7\0\0\0\0\0\0\xFF\0APA\0\0\0\0\1"s + text + "\0{\\rtf1 \\'e9t\\'e9 Smith}"s;
  };
  const std::string before =
      reply("{\\b caf\\uc0\\u233 } \\uc0\\u8211  \\'27 \\uc0\\u-10179 \\uc0\\u-8704 ");
  const std::string after = lookAlike("SCNR", before);
  EXPECT_EQ(after.size(), before.size());
  EXPECT_THAT(after, HasSubstr("APA"));
  EXPECT_THAT(after, HasSubstr("{\\b "));
  EXPECT_THAT(after, HasSubstr("\\uc0\\u8211 "));
  EXPECT_THAT(after, HasSubstr("\\'27"));
  EXPECT_THAT(after, HasSubstr("{\\rtf1 \\'e"));
  for (const char *const word : {"caf", "u233", "\\'e9", "-8704", "Smith"}) {
    EXPECT_THAT(after, Not(HasSubstr(word)));
  }
}

}  // namespace
