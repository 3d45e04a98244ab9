// The preliminary scan and the resolution report that answers it.

#import "Support/AgentTest.h"

#include <Formats/CitationResolution.h>
#include <Formats/ScanRequest.h>

namespace plugin_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using namespace std::string_literals;

const std::string header = "<?xml version=\"1.0\" encoding=\"UTF-8\"?><xml><records>";
const std::string trailer = "</records></xml>";

std::string record(const std::string &tag) {
  return "<record><korvo>" + tag + "</korvo><rec-number>" + tag + "</rec-number></record>";
}

std::string request(uint32_t documentID, std::vector<formats::CitationPair> citations) {
  return formats::encodePreliminaryScanRequest(documentID, citations);
}

class PreliminaryScan : public AgentTest {
 protected:
  // The entries of the answer: citation and XML text.
  std::vector<std::pair<std::string, std::string>> entriesSent() {
    std::vector<std::pair<std::string, std::string>> entries;
    const std::string payload = payloadSent();
    const auto decoded = formats::decodeCitationResolution(payload);
    EXPECT_TRUE(decoded) << decoded.error();
    for (const auto &entry : decoded->citations) {
      entries.emplace_back(entry.citation, entry.markup);
    }
    return entries;
  }
};

TEST_F(PreliminaryScan, WithoutCitationsTheAnswerHasTenBytes) {
  const Answer answer = deliver("PRSQ", "\0\0\1\2\3\4\0\0\0\0"s, true);
  EXPECT_EQ(answer.status, noErr);
  EXPECT_FALSE(answer.directObject());
  EXPECT_THAT(eventsSent(), ElementsAre("PRSR"));
  EXPECT_EQ(carrier_.sent[0].eventClass, code("mLeL"));
  EXPECT_EQ(payloadSent(), "\0\0\1\2\3\4\0\0\0\0"s);
  EXPECT_TRUE(assertions_->errors.empty());
  EXPECT_EQ(documentID(), 0x01020304u);
}

TEST_F(PreliminaryScan, MellelIsNotBroughtToTheFront) {
  deliver("PRSQ", request(1, {{"Smith", ""}}));
  EXPECT_THAT(carrier_.activated, IsEmpty());
}

TEST_F(PreliminaryScan, EveryComponentIsLookedUpAndGetsTheSameRecordWhetherFoundOrNot) {
  host_->matches["a"] = {"a"};
  deliver("PRSQ", request(1, {{"a;b", "ignored"}}));
  EXPECT_THAT(entriesSent(),
              ElementsAre(testing::Pair("a;b", header + record("a") + record("b") + trailer)));
  EXPECT_THAT(callsOf({"currentLibrary", "match", "send"}),
              ElementsAre("currentLibrary", "match a", "match b", "send PRSR"));
}

TEST_F(PreliminaryScan, TheLibraryIsAskedForOnceForAllCitations) {
  deliver("PRSQ", request(1, {{"a", ""}, {"b", ""}, {"c", ""}}));
  EXPECT_THAT(callsOf({"currentLibrary", "match"}),
              ElementsAre("currentLibrary", "match a", "match b", "match c"));
}

TEST_F(PreliminaryScan, TrailingSemicolonGivesAnEmptyRecordAndALookUp) {
  deliver("PRSQ", request(1, {{"a;", ""}}));
  EXPECT_THAT(entriesSent(),
              ElementsAre(testing::Pair("a;", header + record("a") + record("") + trailer)));
  EXPECT_THAT(callsOf({"match"}), ElementsAre("match a", "match "));
}

TEST_F(PreliminaryScan, ComponentsLoseTheirMarkersAndKeepTheirText) {
  deliver("PRSQ", request(1, {{"verified a;verified verified <b>&", ""}}));
  EXPECT_THAT(entriesSent(),
              ElementsAre(testing::Pair("a;verified verified <b>&",
                                        header + record("a") + record("<b>&") + trailer)));
}

TEST_F(PreliminaryScan, ComponentsAreLookedUpWithoutTheirMarkers) {
  deliver("PRSQ", request(1, {{"a;verified b;verified verified ", ""}}));
  EXPECT_THAT(callsOf({"match"}), ElementsAre("match a", "match b", "match "));
}

TEST_F(PreliminaryScan, EmptyCitationIsTwoSingleNULs) {
  deliver("PRSQ", request(7, {{"", "second"}}));
  EXPECT_EQ(payloadSent(), "\0\0\0\0\0\7\0\0\0\1\0\0"s);
  EXPECT_THAT(callsOf({"match"}), IsEmpty());
}

TEST_F(PreliminaryScan, SecondStringsNeverInfluenceTheAnswer) {
  deliver("PRSQ", request(1, {{"a", "x"}, {"b", "verified y"}}));
  deliver("PRSQ", request(1, {{"a", ""}, {"b", "z"}}));
  ASSERT_EQ(carrier_.sent.size(), 2u);
  EXPECT_EQ(payloadSent(0), payloadSent(1));
}

TEST_F(PreliminaryScan, CountMismatchIsReportedAndAnsweredIfTheHandlerReturns) {
  std::string payload = request(1, {{"a", ""}, {"b", ""}});
  payload[9] = 3;
  deliver("PRSQ", payload);
  ASSERT_EQ(assertions_->errors.size(), 1u);
  const ReportedError &error = assertions_->errors[0];
  EXPECT_EQ(error.method, "handlePreliminaryScanEvent:withReplyEvent:");
  EXPECT_EQ(error.object, agent_);
  EXPECT_EQ(error.file, "Plugin/KorvoMellelPlugin/KorvoMellelAgent");
  EXPECT_EQ(error.lineNumber, 424);
  EXPECT_EQ(error.description, "Bad PRSQ message. count mismatch (3 vs 2)");
  EXPECT_EQ(entriesSent().size(), 2u);
}

TEST_F(PreliminaryScan, CountMismatchThatRaisesCancelsSoThatMellelDoesNotWait) {
  assertions_->raises = YES;
  std::string payload = request(9, {{"a", ""}});
  payload[9] = 3;
  EXPECT_EQ(deliver("PRSQ", payload).status, noErr);
  EXPECT_THAT(eventsSent(), ElementsAre("Rmcr"));
  EXPECT_EQ(payloadSent(), "\0\0\0\0\0\11"s);
}

TEST_F(PreliminaryScan, AnswerThatCannotBeSentIsNotFollowedByACancel) {
  carrier_.sendResult = std::unexpected(OSStatus{procNotFound});
  EXPECT_EQ(deliver("PRSQ", request(1, {{"a", ""}})).status, noErr);
  EXPECT_THAT(eventsSent(), ElementsAre("PRSR"));
  EXPECT_THAT(carrier_.activated, IsEmpty());
  EXPECT_THAT(log_->lines(), IsEmpty());
}

TEST_F(PreliminaryScan, LargeDocumentIDsAreUnsigned) {
  deliver("PRSQ", request(0xFFFFFFFF, {}));
  EXPECT_EQ(documentID(), 4294967295u);
  EXPECT_EQ(payloadSent().substr(2, 4), "\xFF\xFF\xFF\xFF");
}

TEST_F(PreliminaryScan, SizesCountUTF8Bytes) {
  deliver("PRSQ", request(1, {{"Möller 漢字 😀", ""}}));
  EXPECT_TRUE(assertions_->errors.empty());
  EXPECT_THAT(entriesSent(), ElementsAre(testing::Pair(
                                 "Möller 漢字 😀", header + record("Möller 漢字 😀") + trailer)));
}

TEST_F(PreliminaryScan, InvalidUTF8ShiftsNoEntry) {
  deliver("PRSQ", request(1, {{"a\xFF", ""}, {"b", ""}}));
  EXPECT_TRUE(assertions_->errors.empty());
  ASSERT_EQ(entriesSent().size(), 2u);
  EXPECT_EQ(entriesSent()[0].first, "a\xEF\xBF\xBD");
  EXPECT_EQ(entriesSent()[1].first, "b");
}

TEST_F(PreliminaryScan, AbsentPayloadIsAnsweredAsAnEmptyOne) {
  setDocumentID(5);
  EXPECT_EQ(deliver("PRSQ", std::nullopt).status, noErr);
  EXPECT_EQ(payloadSent(), std::string(10, '\0'));
  EXPECT_THAT(log_->lines(), IsEmpty());
}

// Cocoa takes it for a character. GNUstep takes it for the order of all bytes behind it: turned
// round, what is well-formed becomes other letters, or half a surrogate pair and so no string at
// all.
TEST_F(PreliminaryScan, AByteOrderMarkAtTheBeginningIsACharacterOfTheText) {
  std::vector<std::string> texts;
  std::vector<std::string> calls;
  for (const char16_t mark : {u'\uFEFF', u'\uFFFE'}) {
    for (unsigned unit = 0x80; unit < 0xD800; unit += 0x0F) {
      texts.push_back(formats::encodeUTF8(std::u16string{mark, static_cast<char16_t>(unit)}));
      calls.push_back("match " + texts.back());
    }
  }
  std::vector<formats::CitationPair> citations;
  for (const std::string &text : texts) {
    citations.push_back({text, ""});
  }
  deliver("PRSQ", request(1, citations));
  EXPECT_EQ(callsOf({"match"}), calls);
  const auto entries = entriesSent();
  ASSERT_EQ(entries.size(), texts.size());
  for (std::size_t index = 0; index < texts.size(); ++index) {
    ASSERT_EQ(entries[index].first, texts[index]);
    ASSERT_EQ(entries[index].second, header + record(texts[index]) + trailer);
  }
}

TEST_F(PreliminaryScan, EveryCutOfAPayloadIsAnswered) {
  const std::string whole = request(0x01020304, {{"a;b", "x"}, {"verified c", "y"}});
  for (std::size_t length = 0; length <= whole.size(); ++length) {
    carrier_.sent.clear();
    EXPECT_EQ(deliver("PRSQ", whole.substr(0, length)).status, noErr);
    ASSERT_THAT(eventsSent(), ElementsAre("PRSR")) << length;
    EXPECT_TRUE(formats::decodeCitationResolution(payloadSent())) << length;
  }
}

TEST_F(PreliminaryScan, WithoutMemoryTheScanIsCancelled) {
  const NoMemory noMemory(agentClass_);
  deliver("PRSQ", request(3, {{"a", ""}}));
  EXPECT_THAT(log_->lines(),
              ElementsAre("KorvoMellelAgent.reportCitationResolution: out of memory"));
  EXPECT_THAT(eventsSent(), ElementsAre("Rmcr"));
  EXPECT_EQ(payloadSent(), "\0\0\0\0\0\3"s);
}

// Writes one citation more than was announced: what a list that changed meanwhile would look like.
IMP realAssembler = nullptr;
int64_t assembleTooMuch(id self, SEL selector, formats::PayloadWriter &writer, NSArray *citations,
                        NSArray *markups) {
  using Assembler = int64_t (*)(id, SEL, formats::PayloadWriter &, NSArray *, NSArray *);
  reinterpret_cast<Assembler>(reinterpret_cast<void (*)()>(realAssembler))(self, selector, writer,
                                                                           citations, markups);
  writer.writeBytes("too much");
  return static_cast<int64_t>(writer.written());
}

TEST_F(PreliminaryScan, SizeMismatchIsReportedAndTheComputedSizeSent) {
  const SEL selector = @selector(assembleCitationResolutionBuffer:citationArray:xmlArray:);
  realAssembler = class_getMethodImplementation(agentClass_, selector);
  const ReplacedMethod assembler(agentClass_, selector, asMethod(assembleTooMuch));
  deliver("PRSQ", request(1, {}));
  ASSERT_EQ(assertions_->errors.size(), 1u);
  const ReportedError &error = assertions_->errors[0];
  EXPECT_EQ(error.method, "reportCitationResolution:");
  EXPECT_EQ(error.object, agent_);
  EXPECT_EQ(error.file, "Plugin/KorvoMellelPlugin/KorvoMellelAgent");
  EXPECT_EQ(error.lineNumber, 557);
  EXPECT_EQ(error.description,
            "Programming error - buffer size mismatch in citationResolutionBuffer(18 vs 10)");
  EXPECT_EQ(payloadSent().size(), 10u);
}

TEST_F(PreliminaryScan, SizeMismatchThatRaisesCancelsSoThatMellelDoesNotWait) {
  const SEL selector = @selector(assembleCitationResolutionBuffer:citationArray:xmlArray:);
  realAssembler = class_getMethodImplementation(agentClass_, selector);
  const ReplacedMethod assembler(agentClass_, selector, asMethod(assembleTooMuch));
  assertions_->raises = YES;
  EXPECT_EQ(deliver("PRSQ", request(1, {})).status, noErr);
  EXPECT_THAT(eventsSent(), ElementsAre("Rmcr"));
}

TEST_F(PreliminaryScan, AssemblerReturnsTheBytesItWrote) {
  setDocumentID(0xAABBCCDD00000002);
  std::vector<char> buffer(10 + 2 + 2);
  formats::PayloadWriter writer(buffer);
  EXPECT_EQ([agent_ assembleCitationResolutionBuffer:writer
                                       citationArray:array({@"a"})
                                            xmlArray:array({@"b"})],
            14);
  EXPECT_EQ(std::string(buffer.begin(), buffer.end()), "\0\0\0\0\0\2\0\0\0\1a\0b\0"s);
}

}  // namespace
}  // namespace plugin_test
