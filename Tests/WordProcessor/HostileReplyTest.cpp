// Bytes from the host, through the real commands: every answer cut short at every byte and with
// every bit flipped, answers of other kinds, too many, too few, too late. Whatever arrives, the
// copy is what those bytes say or is not made, the document and an older copy stay as they were,
// and the next run works.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>
#include <WordProcessor/Commands.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <sstream>

#include "Support/ProcessWithoutBus.h"
#include "Support/ReplyRules.h"
#include "Support/ScriptedHost.h"

namespace wordprocessor {
namespace {

namespace fs = std::filesystem;
namespace request = formats::request;
namespace answer = formats::answer;
using formats::FourCharacterCode;
using testing::Answer;
using testing::Draft;
using testing::ScriptedHost;
using ::testing::StartsWith;

const std::string oldCopy = "{\\rtf1 the copy of yesterday}";

Draft makeDraft() {
  Draft draft;
  draft.citations = {"Smith 2001", "Nobody", "!S"};
  draft.pieces = {"{\\rtf1\\ansi\\ansicpg1252\\deff0{\\fonttbl{\\f0 Times;}}\n\\pard First ",
                  " then \\u233?", " and", " last.\\par\n", "\nEnd.\\par\n}\n"};
  draft.rtf = draft.pieces[0];
  for (std::size_t index = 0; index < draft.citations.size(); ++index) {
    draft.rtf += "\\{" + draft.citations[index] + "\\}" + draft.pieces[index + 1];
  }
  draft.rtf += "\\{bibliography\\}\\par" + draft.pieces.back();
  return draft;
}

std::string fileBytes(const fs::path &path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

// What the standard output gets for as long as it lives.
class Output {
 public:
  Output() : before_(std::cout.rdbuf(text_.rdbuf())) {}
  ~Output() { std::cout.rdbuf(before_); }
  Output(const Output &) = delete;
  Output &operator=(const Output &) = delete;

  std::string text() const { return text_.str(); }

 private:
  std::ostringstream text_;
  std::streambuf *before_;
};

// What was seen of a run.
struct Ran {
  int status = 0;
  std::string line;
  std::string output;
  std::string copy;

  bool operator==(const Ran &) const = default;
};

// A command whose answer is under attack.
struct Attacked {
  std::string name;
  Command command;
  FourCharacterCode request = 0;
  // What is wrong with a run after an answer with this payload; empty if nothing is.
  std::function<std::string(const std::string &payload, std::uint32_t documentID, const Ran &)>
      fault;
};

class HostileReply : public ::testing::Test {
 protected:
  HostileReply() {
    // In memory where there is such a place: every copy is forced to its disk.
    const fs::path memory = "/dev/shm";
    std::string pattern = (access(memory.c_str(), W_OK) == 0 ? memory : fs::temp_directory_path()) /
                          "mellel-replies-XXXXXX";
    EXPECT_NE(mkdtemp(pattern.data()), nullptr);
    folder_ = pattern;
    std::ofstream(input(), std::ios::binary) << draft_.rtf;
  }
  ~HostileReply() override {
    std::cout << "[ runs     ] " << runs_ << '\n';
    fs::remove_all(folder_);
  }

  std::string input() const { return folder_ / "in.rtf"; }
  std::string output() const { return folder_ / "out.rtf"; }

  Command formatting(bool isLive) const {
    return FormatOptions{.input = input(), .output = output(), .style = "apa", .isLive = isLive};
  }
  Command insertion() const { return InsertOptions{{{input(), "{Nobody}", output()}}}; }
  Command check() const { return CheckOptions{input(), true}; }

  // An older copy is there. No run may take longer than it was given, or change the document, or
  // leave anything else behind.
  Ran run(const Command &command, std::optional<std::chrono::seconds> timeout = {}) {
    ++runs_;
    std::ofstream(output(), std::ios::binary) << oldCopy;
    const auto begin = std::chrono::steady_clock::now();
    Ran ran;
    {
      const Output captured;
      const auto done = wordprocessor::run({command, timeout});
      ran.output = captured.text();
      if (!done) {
        ran.status = static_cast<int>(done.error().status);
        ran.line = done.error().line;
      }
    }
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(20));
    ran.copy = fileBytes(output());
    EXPECT_EQ(fileBytes(input()), draft_.rtf) << "the document itself was changed";
    EXPECT_EQ(std::distance(fs::directory_iterator(folder_), {}), 2) << "something was left behind";
    EXPECT_FALSE(testing::isReceiving());
    return ran;
  }

  static std::string faultOfRefusal(const Ran &ran) {
    if (ran.status != 4 || !ran.line.starts_with("Korvo's answer is broken: ")) {
      return "it is not refused, but " + std::to_string(ran.status) + ": " + ran.line;
    }
    if (testing::withoutControls(ran.line) != ran.line || ran.copy != oldCopy ||
        !ran.output.empty()) {
      return "the refusal is untidy";
    }
    return "";
  }

  std::string faultOfCopy(const testing::SlowText &expected, const std::string &report,
                          const Ran &ran) const {
    if (ran.status != 0) {
      return "it is refused: " + ran.line;
    }
    const auto shown = testing::slowText(ran.copy);
    if (!shown || !testing::showTheSame(*shown, expected)) {
      return "the copy is wrong: " + ran.copy + "\nexpected: " + testing::plainText(expected);
    }
    std::size_t position = 0;
    for (const std::string &piece : draft_.pieces) {
      const std::size_t found = ran.copy.find(piece, position);
      if (found == std::string::npos || (position == 0 && found != 0)) {
        return "the copy lacks bytes of the document: " + ran.copy;
      }
      position = found + piece.size();
    }
    const std::string told = "wrote: " + output() + '\n' + report;
    return ran.output == told ? "" : "it tells " + ran.output + "expected: " + told;
  }

  std::string faultOfFormatting(const std::string &payload, std::uint32_t documentID,
                                const Ran &ran) const {
    const auto copy = testing::copyFromScanReply(draft_, documentID, payload);
    return copy ? faultOfCopy(copy->text, copy->report, ran) : faultOfRefusal(ran);
  }

  // A scan reads no more of it than whether it is whole.
  std::string faultOfFirstStep(const std::string &payload, std::uint32_t documentID,
                               const Ran &ran) const {
    const auto found = testing::lookedUpIn(draft_.citations.size(), documentID, payload);
    return found ? faultOfFormatting(testing::goodScanReply(documentID), documentID, ran)
                 : faultOfRefusal(ran);
  }

  std::string faultOfCheck(const std::string &payload, std::uint32_t documentID,
                           const Ran &ran) const {
    const auto found = testing::lookedUpIn(draft_.citations.size(), documentID, payload);
    if (!found) {
      return faultOfRefusal(ran);
    }
    std::string told;
    for (const testing::LookedUp &entry : *found) {
      told += (told.empty() ? "[\n  {\"citation\": " : ",\n  {\"citation\": ") +
              inJSON(entry.citation) + ", \"records\": [";
      for (const std::string &record : entry.records) {
        told += (&record == &entry.records.front() ? "" : ", ") + inJSON(record);
      }
      told += "]}";
    }
    told += "\n]\n";
    return ran.status == 0 && ran.output == told && ran.copy == oldCopy ? ""
                                                                        : "it tells " + ran.output;
  }

  static std::string inJSON(const std::string &text) {
    std::string json = "\"";
    for (const char byte : text) {
      if (byte >= 0 && byte < 0x20) {
        constexpr char digits[] = "0123456789abcdef";
        json += std::string("\\u00") + digits[byte >> 4] + digits[byte & 15];
      } else {
        json += (byte == '"' || byte == '\\' ? "\\" : "") + std::string(1, byte);
      }
    }
    return json + '"';
  }

  std::string faultOfInsertion(const std::string &payload, const Ran &ran) const {
    auto citation = testing::citationIn(payload);
    if (!citation) {
      return faultOfRefusal(ran);
    }
    if (!citation->starts_with('{') || !citation->ends_with('}')) {
      *citation = '{' + *citation + '}';
    }
    return faultOfCopy(testing::withInsertion(draft_, "{Nobody}", *citation),
                       "inserted: " + testing::withoutControls(*citation) + '\n', ran);
  }

  static std::string faultOfPrinting(const std::string &payload, const Ran &ran) {
    const auto citation = testing::citationIn(payload);
    if (!citation) {
      return faultOfRefusal(ran);
    }
    const bool isRight = ran.status == 0 && ran.copy == oldCopy &&
                         ran.output == testing::withoutControls(*citation) + '\n';
    return isRight ? "" : "it tells " + ran.output;
  }

  static std::string faultOfHandshake(const std::string &payload, const Ran &ran) {
    if (payload.size() != 14) {
      return faultOfRefusal(ran);
    }
    std::string told = "preferences:";
    for (std::size_t index = 0; index < payload.size(); index += 2) {
      told += ' ' + std::to_string(static_cast<unsigned char>(payload[index]) * 256 +
                                   static_cast<unsigned char>(payload[index + 1]));
    }
    return ran.status == 0 && ran.output == told + '\n' ? "" : "it tells " + ran.output;
  }

  // Every command, and in a scan each of its two steps.
  std::vector<Attacked> attacked() const {
    const auto without = [](auto function) {
      return [function](const std::string &payload, std::uint32_t, const Ran &ran) {
        return function(payload, ran);
      };
    };
    return {
        {"the first answer of a scan", formatting(false), request::preliminaryScan,
         std::bind_front(&HostileReply::faultOfFirstStep, this)},
        {"the second answer of a scan", formatting(false), request::finalScan,
         std::bind_front(&HostileReply::faultOfFormatting, this)},
        {"the reply to a live bibliography", formatting(true), request::liveBibliography,
         std::bind_front(&HostileReply::faultOfFormatting, this)},
        {"the answer to a check", check(), request::preliminaryScan,
         std::bind_front(&HostileReply::faultOfCheck, this)},
        {"the citation to insert", insertion(), request::insertCitation,
         without(std::bind_front(&HostileReply::faultOfInsertion, this))},
        {"the citation to print", InsertOptions{}, request::insertCitation,
         without(&HostileReply::faultOfPrinting)},
        {"the preferences", HandshakeOptions{}, request::handshake,
         without(&HostileReply::faultOfHandshake)},
    };
  }

  // What is done to a good answer.
  using Damage = std::function<void(Answer &)>;

  // The damaged answer comes, and where it says that it is for another document the good one after
  // it.
  void expectRight(const Attacked &target, const Damage &damage, const std::string &what) {
    Answer sent;
    std::uint32_t sentFor = 0;
    host_.answer(target.request, [&](const Answer &good, std::uint32_t documentID) {
      sent = good;
      sentFor = documentID;
      damage(sent);
      std::vector<Answer> answers = {sent};
      if (documentID != 0 && testing::isForAnother(sent.payload.value_or(""), documentID)) {
        answers.push_back(good);
        sent = good;
      }
      return answers;
    });
    const Ran ran = run(target.command);
    const std::string fault = target.fault(sent.payload.value_or(""), sentFor, ran);
    if (!fault.empty()) {
      ADD_FAILURE() << target.name << ", " << what << ": " << fault;
    }
    host_.answerWell();
  }

  // The same command, and a host that answers well.

  void expectGoodRun(const Attacked &target) {
    std::uint32_t documentID = 0;
    std::string payload;
    host_.answer(target.request, [&](const Answer &good, std::uint32_t sentFor) {
      documentID = sentFor;
      payload = *good.payload;
      return std::vector<Answer>{good};
    });
    const Ran ran = run(target.command);
    ASSERT_EQ(target.fault(payload, documentID, ran), "") << target.name << ", answered well";
    ASSERT_EQ(ran.status, 0);
    host_.answerWell();
  }

  static std::size_t sizeOfGood(const Attacked &target) {
    switch (target.request) {
      case request::preliminaryScan:
        return testing::goodResolution(1).size();
      case request::insertCitation:
        return testing::goodCitation().size();
      case request::handshake:
        return testing::goodPreferences().size();
      default:
        return testing::goodScanReply(1).size();
    }
  }

  const Draft draft_ = makeDraft();
  ScriptedHost host_;
  fs::path folder_;
  std::size_t runs_ = 0;
};

TEST_F(HostileReply, GoodAnswersDoWhatTheySay) {
  for (const Attacked &target : attacked()) {
    expectGoodRun(target);
  }
  const Ran ran = run(formatting(false));
  EXPECT_EQ(ran.output, "wrote: " + output() +
                            "\nstyle: Stylé\nformatted: 2 of 3 citations\n"
                            "not formatted: {Nobody}\n"
                            "bibliography: 2 entries in place of {bibliography}\n");
  const auto shown = testing::slowText(ran.copy);
  ASSERT_TRUE(shown);
  EXPECT_EQ(testing::plainText(*shown),
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
    for (std::size_t bit = 0; bit < sizeOfGood(target) * 8; ++bit) {
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
    expectRight(
        target, [](Answer &sent) { sent.payload = ""; }, "empty");
    expectRight(
        target, [](Answer &sent) { *sent.payload += '\0'; }, "with a NUL more");
    expectRight(
        target, [](Answer &sent) { *sent.payload += *sent.payload; }, "twice in one");
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
      expectRight(
          target, [type](Answer &sent) { sent.type = type; }, std::to_string(type));
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

TEST_F(HostileReply, TheFirstAnswerCountsAndWhatFollowsDoesNot) {
  for (const Attacked &target : attacked()) {
    for (const bool isFirstGood : {true, false}) {
      std::string counted;
      std::uint32_t documentID = 0;
      host_.answer(target.request, [&](const Answer &good, std::uint32_t sentFor) {
        Answer bad = good;
        bad.payload = good.payload->substr(0, good.payload->size() - 1);
        documentID = sentFor;
        counted = isFirstGood ? *good.payload : *bad.payload;
        return isFirstGood ? std::vector<Answer>{good, bad, good}
                           : std::vector<Answer>{bad, good, good};
      });
      const Ran ran = run(target.command);
      EXPECT_EQ(target.fault(counted, documentID, ran), "") << target.name;
      expectGoodRun(target);
    }
  }
}

TEST_F(HostileReply, ACancellationCountsUnlessItIsForAnotherDocumentWhateverItsBytes) {
  for (const FourCharacterCode step : {request::preliminaryScan, request::finalScan}) {
    const Attacked target = attacked()[step == request::finalScan ? 1 : 0];
    const auto expectOutcome = [&](const std::function<void(std::string &)> &damage) {
      bool isForAnother = false;
      std::uint32_t documentID = 0;
      host_.answer(step, [&](const Answer &good, std::uint32_t sentFor) {
        std::string payload = testing::goodCancel(sentFor);
        damage(payload);
        isForAnother = testing::isForAnother(payload, sentFor);
        documentID = sentFor;
        return std::vector<Answer>{{formats::mellelSignature, answer::cancel, payload}, good};
      });
      const Ran ran = run(target.command);
      if (isForAnother) {
        EXPECT_EQ(faultOfFormatting(testing::goodScanReply(documentID), documentID, ran), "");
      } else {
        EXPECT_EQ(ran, (Ran{1, "cancelled in Korvo", "", oldCopy}));
      }
    };
    for (std::size_t size = 0; size <= 6; ++size) {
      expectOutcome([size](std::string &payload) { payload.resize(size); });
    }
    for (std::size_t bit = 0; bit < 48; ++bit) {
      expectOutcome([bit](std::string &payload) {
        payload[bit / 8] = static_cast<char>(payload[bit / 8] ^ 1 << bit % 8);
      });
    }
    expectOutcome([](std::string &payload) { payload.assign(1 << 20, '\xFF'); });
    expectGoodRun(target);
  }
}

TEST_F(HostileReply, AnswersToOtherQuestionsArePassedOver) {
  for (const Attacked &target : attacked()) {
    std::string payload;
    std::uint32_t documentID = 0;
    host_.answer(target.request, [&](const Answer &good, std::uint32_t sentFor) {
      payload = *good.payload;
      documentID = sentFor;
      std::vector<Answer> answers;
      for (const FourCharacterCode other :
           {answer::preferences, answer::citationResolution, answer::finalScan}) {
        answers.push_back({formats::mellelSignature, other, "not wanted"});
      }
      answers.push_back({formats::insertionEventClass, answer::citation, "not wanted"});
      std::erase_if(answers, [&](const Answer &other) { return other.eventID == good.eventID; });
      // The reply of a live bibliography has its own way.
      answers.insert(
          good.eventID == answer::finalScan && sentFor == 0 ? answers.begin() : answers.end(),
          good);
      return answers;
    });
    const Ran ran = run(target.command);
    EXPECT_EQ(target.fault(payload, documentID, ran), "") << target.name;
    host_.answerWell();
  }
}

TEST_F(HostileReply, EventsThatNobodyRegisteredAreTurnedAwayInTheMiddleOfAScan) {
  std::size_t turnedAway = 0;
  const auto strangers = [&](const Answer &good, std::uint32_t) {
    for (const auto &[eventClass, eventID] :
         {std::pair{formats::mellelSignature, answer::finalScan},
          std::pair{formats::insertionEventClass, answer::citation}}) {
      for (int bit = 0; bit < 32; ++bit) {
        turnedAway += host_.deliver({eventClass ^ 1U << bit, eventID, "x"}) == errAEEventNotHandled;
        turnedAway += host_.deliver({eventClass, eventID ^ 1U << bit, "x"}) == errAEEventNotHandled;
      }
    }
    for (const FourCharacterCode eventID :
         {request::preliminaryScan, request::finalScan, request::handshake, FourCharacterCode{0}}) {
      turnedAway += host_.deliver({formats::mellelSignature, eventID, "x"}) == errAEEventNotHandled;
    }
    return std::vector<Answer>{good};
  };
  host_.answer(request::preliminaryScan, strangers);
  host_.answer(request::finalScan, strangers);
  EXPECT_EQ(run(formatting(false)).status, 0);
  EXPECT_EQ(turnedAway, 2U * (128 + 4));
}

TEST_F(HostileReply, AnswersAfterTheEndReachNobodyAndDoNotDisturbTheNextRun) {
  for (const Attacked &target : attacked()) {
    Answer late;
    host_.answer(target.request, [&](const Answer &good, std::uint32_t) {
      late = good;
      return std::vector<Answer>{good};
    });
    EXPECT_EQ(run(target.command).status, 0);
    EXPECT_EQ(host_.deliver(late), errAEEventNotHandled) << target.name;
    // To the next process of the same name, which has not asked yet for this or asks for another
    // document.
    std::uint32_t documentID = 0;
    std::string payload;
    host_.answer(target.request, [&](const Answer &good, std::uint32_t sentFor) {
      documentID = sentFor;
      payload = *good.payload;
      return sentFor == 0 ? std::vector<Answer>{good} : std::vector<Answer>{late, good};
    });
    const Ran ran = run(target.command);
    EXPECT_EQ(target.fault(payload, documentID, ran), "") << target.name;
    host_.answerWell();
  }
}

TEST_F(HostileReply, AnswerThatNeverComesEndsTheWaitingInTime) {
  using namespace std::chrono_literals;
  const auto silence = [](const Answer &, std::uint32_t) { return std::vector<Answer>(); };
  const auto onlyForAnother = [](Answer good, std::uint32_t documentID) {
    good.payload = testing::goodScanReply(documentID + 1);
    return std::vector<Answer>{good};
  };
  const Ran silent = {4, "Korvo did not answer within 1 s", "", oldCopy};
  host_.answer(request::preliminaryScan, silence);
  EXPECT_EQ(run(formatting(false), 1s), silent);
  host_.answerWell();
  host_.answer(request::finalScan, onlyForAnother);
  EXPECT_EQ(run(formatting(false), 1s), silent);
  host_.answer(request::handshake, silence);
  EXPECT_EQ(run(HandshakeOptions{}, 1s), silent);
  host_.answerWell();
  for (const Attacked &target : attacked()) {
    expectGoodRun(target);
  }
}

TEST_F(HostileReply, HostThatEndsIsToldUnlessItsAnswerWasThere) {
  for (const Attacked &target : attacked()) {
    if (target.request == request::liveBibliography) {
      continue;  // The bus itself answers for a host that has ended.
    }
    for (const bool hasAnswered : {false, true}) {
      std::uint32_t documentID = 0;
      std::string payload;
      host_.answer(target.request, [&](const Answer &good, std::uint32_t sentFor) {
        documentID = sentFor;
        payload = *good.payload;
        testing::endWatchedProcesses();
        return hasAnswered ? std::vector<Answer>{good} : std::vector<Answer>();
      });
      const Ran ran = run(target.command);
      if (hasAnswered) {
        EXPECT_EQ(target.fault(payload, documentID, ran), "") << target.name;
      } else {
        EXPECT_EQ(ran, (Ran{3, "Korvo ended before it answered", "", oldCopy})) << target.name;
      }
    }
    expectGoodRun(target);
  }
}

TEST_F(HostileReply, BeingBroughtToTheFrontEndsOnlyTheWaitForACitation) {
  for (const Attacked &target : attacked()) {
    std::uint32_t documentID = 0;
    std::string payload;
    const bool isInsertion = target.request == request::insertCitation;
    host_.answer(target.request, [&](const Answer &good, std::uint32_t sentFor) {
      documentID = sentFor;
      payload = *good.payload;
      testing::activateThisProcess();
      return isInsertion ? std::vector<Answer>() : std::vector<Answer>{good};
    });
    const Ran ran = run(target.command);
    if (isInsertion) {
      EXPECT_EQ(ran, (Ran{1, "Korvo has no citation to insert: select references there first", "",
                          oldCopy}));
    } else {
      EXPECT_EQ(target.fault(payload, documentID, ran), "") << target.name;
    }
    expectGoodRun(target);
  }
}

}  // namespace
}  // namespace wordprocessor
