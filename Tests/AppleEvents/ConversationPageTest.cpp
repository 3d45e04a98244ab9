// The page of a conversation: well-formed, complete, without anything from elsewhere, and safe from
// what it shows.
#include "Payloads.h"

#include <Tools/AppleEvents/Payloads/EventKinds.h>
#include <Tools/AppleEvents/Recordings/ConversationPage.h>

#include <expat.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace appleevents;
using namespace appleevents_test;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

RecordedMessage event(const std::string &eventID, const std::string &bytes, bool isRequest) {
  const auto mellel = readCode("mLeL").value();
  const auto korvo = readCode("KRVO").value();
  return {.kind = RecordedMessage::Kind::event,
          .number = 1,
          .from = isRequest ? mellel : korvo,
          .to = isRequest ? korvo : mellel,
          .eventClass = mellel,
          .eventID = readCode(eventID).value(),
          .time = std::chrono::microseconds(1500),
          .parameters = {{readCode("----").value(), readCode("TEXT").value(), bytes}}};
}

std::string pageOf(const std::vector<RecordedMessage> &messages) {
  return conversationPage({false, messages}).text();
}

// The elements of a well-formed page, by how often they come; empty for any other.
std::map<std::string, int> elementsOf(const std::string &page) {
  std::map<std::string, int> elements;
  XML_Parser parser = XML_ParserCreate("UTF-8");
  XML_SetUserData(parser, &elements);
  XML_SetStartElementHandler(parser, [](void *data, const XML_Char *name, const XML_Char **) {
    ++(*static_cast<std::map<std::string, int> *>(data))[name];
  });
  const bool isWellFormed =
      XML_Parse(parser, page.data(), static_cast<int>(page.size()), 1) == XML_STATUS_OK;
  XML_ParserFree(parser);
  return isWellFormed ? elements : std::map<std::string, int>();
}

TEST(ConversationPage, HasAnArrowForEachMessageAndALineForEachField) {
  const std::string page = pageOf({event("IMHR", examples().at("handshake"), true),
                                   event("PREF", examples().at("preferences"), false)});
  const auto elements = elementsOf(page);
  ASSERT_FALSE(elements.empty()) << page;
  EXPECT_EQ(elements.at("details"), 2);
  EXPECT_EQ(elements.at("summary"), 2);
  EXPECT_EQ(elements.at("tr"), 2 + 2 + 7);
  EXPECT_THAT(page, AllOf(HasSubstr("▶"), HasSubstr("◀"), HasSubstr(">handshake<"),
                          HasSubstr(">preferences<"), HasSubstr("1.5 ms")));
}

TEST(ConversationPage, NeedsNothingFromElsewhereAndIsLightOrDark) {
  const std::string page = pageOf({event("IMHR", examples().at("handshake"), true)});
  for (const char *const word : {"<script", "http", "url(", "@import", "src="}) {
    EXPECT_THAT(page, Not(HasSubstr(word)));
  }
  EXPECT_THAT(page, HasSubstr("@media (prefers-color-scheme: dark)"));
}

TEST(ConversationPage, WhatAuthorsWroteIsNoPartOfThePage) {
  const std::string page =
      pageOf({event("FNDN", "</details><script>alert(\"1\")</script>&amp;\x1B\0"s, true)});
  EXPECT_EQ(elementsOf(page).count("script"), 0u);
  EXPECT_EQ(elementsOf(page).at("details"), 1);
  EXPECT_THAT(page, HasSubstr("&lt;script&gt;alert(&quot;1&quot;)&lt;/script&gt;&amp;amp;"));
}

TEST(ConversationPage, WhatIsBrokenIsMarked) {
  EXPECT_THAT(
      pageOf({event("Rmcr", "\0\0\0"s, false)}),
      AllOf(HasSubstr("class=\"meaning broken\">BROKEN: "), HasSubstr("<p class=\"broken\">")));
  EXPECT_THAT(pageOf({event("IMHR", examples().at("handshake"), true)}),
              Not(HasSubstr("<p class=\"broken\">")));
}

}  // namespace
