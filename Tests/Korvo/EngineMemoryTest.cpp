// A document that was not changed is not formatted again, and one that was, is.
#include "EngineDocument.h"
#include "TemporaryDirectory.h"

#include <StandIns/Korvo/Engine/RememberedDocuments.h>

#include <gtest/gtest.h>

#include <functional>

using namespace korvo_test;
using korvo::engine::RememberedDocuments;

namespace {

// Prints how often it was asked.
constexpr std::string_view countingScript = R"(
  var asked = 0;
  var korvo = {formatDocument: function (request) {
    asked += 1;
    if (request.items.join().indexOf("impossible") >= 0) { throw new Error("no"); }
    return {groups: request.groupSizes.map(function () { return String(asked); }),
            entries: [], entryItems: []};
  }};)";

struct Question {
  Items items = {{"a", R"({"title":"A"})"}, {"b", R"({"title":"B"})"}};
  std::vector<CiteGroup> groups = {{cite("a"), cite("b")}, {cite("a")}};
  korvo::engine::Style style;
  bool wantsBibliography = true;
};

class EngineMemory : public testing::Test {
 protected:
  EngineMemory() {
    question_.style.file = directory_ / "test.csl";
    write("one");
  }

  void write(const std::string &styleText) { directory_.write("test.csl", styleText); }

  // How often the script was asked so far, this question included.
  std::string ask(const Question &question) {
    const auto document = processor_.formatDocument(question.style, lookUpIn(question.items),
                                                    question.groups, question.wantsBibliography);
    return document ? markup(document->groups.at(0)) : document.error();
  }

  std::string askChanged(const std::function<void(Question &)> &change) {
    Question changed = question_;
    change(changed);
    return ask(changed);
  }

  TemporaryDirectory directory_;
  korvo::engine::CitationProcessor processor_{"/nowhere", countingScript};
  Question question_;
};

TEST_F(EngineMemory, TheSameDocumentIsFormattedOnce) {
  EXPECT_EQ(ask(question_), "1");
  EXPECT_EQ(ask(question_), "1");
  EXPECT_EQ(ask(Question(question_)), "1");
}

TEST_F(EngineMemory, EverythingThatCanChangeTheAnswerIsAskedAnew) {
  EXPECT_EQ(ask(question_), "1");
  EXPECT_EQ(askChanged([](Question &to) { to.items["b"] = R"({"title":"b"})"; }), "2");
  EXPECT_EQ(askChanged([](Question &to) { to.style.locale = "de-DE"; }), "3");
  EXPECT_EQ(askChanged([](Question &to) { to.wantsBibliography = false; }), "4");
  EXPECT_EQ(askChanged([](Question &to) { to.groups = {{cite("a")}, {cite("b"), cite("a")}}; }),
            "5");
  EXPECT_EQ(askChanged([](Question &to) { std::swap(to.groups[0], to.groups[1]); }), "6");
  const std::vector<std::function<void(Cite &)>> changes = {
      [](Cite &to) { to.itemId = "b"; },
      [](Cite &to) { to.pageRange = u"7"; },
      [](Cite &to) { to.prefix = u"7"; },
      [](Cite &to) { to.suffix = u"7"; },
      [](Cite &to) { to.yearOnly = true; },
      [](Cite &to) { to.showInText = false; },
      [](Cite &to) { to.includeInBibliography = false; },
      [](Cite &to) { to.stripEnclosure = true; },
      [](Cite &to) { to.suppressSuperscript = true; }};
  int asked = 6;
  for (const auto &change : changes) {
    EXPECT_EQ(askChanged([&](Question &to) { change(to.groups[0][0]); }), std::to_string(++asked));
  }
  write("two");
  EXPECT_EQ(ask(question_), std::to_string(++asked));
  write("one");
  EXPECT_EQ(ask(question_), "1");
}

TEST_F(EngineMemory, WhatFailedIsTriedAgain) {
  const auto impossible = [](Question &to) { to.items["a"] = R"({"title":"impossible"})"; };
  EXPECT_NE(askChanged(impossible), "1");
  EXPECT_NE(askChanged(impossible), "2");
  EXPECT_EQ(ask(question_), "3");
}

std::shared_ptr<const korvo::engine::FormattedDocument> documentOf(const std::u16string &text) {
  korvo::engine::FormattedDocument document;
  document.groups = {{.runs = {{.text = text}}}};
  return std::make_shared<const korvo::engine::FormattedDocument>(std::move(document));
}

TEST(EngineRememberedDocuments, TheOnesAskedForLongestAgoAreForgottenFirst) {
  RememberedDocuments documents(10);
  documents.remember("1234", documentOf(u"one"));
  documents.remember("abcd", documentOf(u"two"));
  ASSERT_NE(documents.find("1234"), nullptr);
  documents.remember("efgh", documentOf(u"three"));
  EXPECT_EQ(documents.find("abcd"), nullptr);
  ASSERT_NE(documents.find("1234"), nullptr);
  EXPECT_EQ(*documents.find("1234"), *documentOf(u"one"));
  EXPECT_EQ(*documents.find("efgh"), *documentOf(u"three"));
}

TEST(EngineRememberedDocuments, TheLastOneIsKeptHoweverLarge) {
  RememberedDocuments documents(10);
  documents.remember("1234", documentOf(u"one"));
  documents.remember(std::string(100, 'x'), documentOf(u"large"));
  EXPECT_EQ(documents.find("1234"), nullptr);
  ASSERT_NE(documents.find(std::string(100, 'x')), nullptr);
  documents.remember("1234", documentOf(u"one"));
  EXPECT_EQ(documents.find(std::string(100, 'x')), nullptr);
  EXPECT_NE(documents.find("1234"), nullptr);
}

}  // namespace
