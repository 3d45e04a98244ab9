// Answers from the host at other times than they are waited for: too many, too few, too late, for
// others.
#include "Support/HostileReply.h"

namespace mellel::commands {
namespace {

namespace request = formats::request;
namespace answer = formats::answer;
using formats::FourCharacterCode;
using mellel_test::Answer;
using mellel_test::Attacked;
using mellel_test::HostileReply;
using mellel_test::oldCopy;
using mellel_test::Ran;

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
        std::string payload = mellel_test::goodCancel(sentFor);
        damage(payload);
        isForAnother = mellel_test::isForAnother(payload, sentFor);
        documentID = sentFor;
        return std::vector<Answer>{{formats::mellelSignature, answer::cancel, payload}, good};
      });
      const Ran ran = run(target.command);
      if (isForAnother) {
        EXPECT_EQ(faultOfFormatting(mellel_test::goodScanReply(documentID), documentID, ran), "");
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
    good.payload = mellel_test::goodScanReply(documentID + 1);
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
        mellel_test::endWatchedProcesses();
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
      mellel_test::activateThisProcess();
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
}  // namespace mellel::commands
