// Bytes from another process: every request cut short at every byte and with every bit flipped, and
// payloads of other kinds. Whatever arrives, the agent does exactly what those bytes ask for, and
// answers the next request as if nothing had been.

#import "Support/RequestTest.h"

#include <Tests/Support/Effort.h>

#include <iostream>
#include <map>

namespace plugin_test {
namespace {

using namespace std::string_literals;

class HostilePayload : public RequestTest {
 protected:
  ~HostilePayload() override { std::cout << "[ requests ] " << delivered_ << '\n'; }

  // What the request must do, again and again.
  Outcome goldenOutcome(const GoldenRequest &request) {
    Outcome outcome = deliver(request);
    EXPECT_EQ(fault(request.eventID, request.payload, outcome), "") << request.name << outcome;
    return outcome;
  }

  void expectRight(const GoldenRequest &request, std::optional<std::string_view> payload,
                   const std::string &what, DescType type = typeChar) {
    ++delivered_;
    const Outcome outcome = deliver(request.eventID, payload, type);
    const std::string wrong = fault(request.eventID, payload, outcome);
    if (!wrong.empty()) {
      ADD_FAILURE() << request.name << ", " << what << ": " << wrong << '\n' << outcome;
    }
  }

  void expectUnharmed(const GoldenRequest &request, const Outcome &golden) {
    ++delivered_;
    EXPECT_EQ(deliver(request), golden) << "after " << request.name;
  }

  std::size_t delivered_ = 0;
};

TEST_F(HostilePayload, EveryGoldenRequestHasItsDocumentedOutcome) {
  std::map<std::string, int> shapes;
  for (const GoldenRequest &request : goldenRequests()) {
    goldenOutcome(request);
    ++shapes[request.eventID];
  }
  EXPECT_EQ(shapes.size(), 8u);
  EXPECT_EQ(startUp().handlers.size(), 8u);
  for (const platform::InstalledHandler &handler : startUp().handlers) {
    EXPECT_TRUE(shapes.contains(characters(handler.eventID))) << characters(handler.eventID);
  }
}

TEST_F(HostilePayload, EveryTruncationIsAnsweredAsWhatItReadsAs) {
  for (const GoldenRequest &request : goldenRequests()) {
    const Outcome golden = goldenOutcome(request);
    const std::string payload = request.payload.value_or("");
    for (std::size_t size = 0; size < payload.size(); ++size) {
      // In memory of its own, where a byte too many is noticed.
      expectRight(request, std::string(payload, 0, size), "cut at " + std::to_string(size));
      expectUnharmed(request, golden);
    }
  }
}

TEST_F(HostilePayload, EveryFlippedBitIsAnsweredAsWhatItReadsAs) {
  for (const GoldenRequest &request : goldenRequests()) {
    const Outcome golden = goldenOutcome(request);
    std::string payload = request.payload.value_or("");
    for (std::size_t bit = 0; bit < payload.size() * 8; bit += test_support::effort(1, 7)) {
      char &byte = payload[bit / 8];
      byte = static_cast<char>(byte ^ 1 << bit % 8);
      expectRight(request, payload, "bit " + std::to_string(bit) + " flipped");
      byte = static_cast<char>(byte ^ 1 << bit % 8);
      expectUnharmed(request, golden);
    }
  }
}

TEST_F(HostilePayload, AbsentAndEmptyDataAreAnswered) {
  for (const GoldenRequest &request : goldenRequests()) {
    const Outcome golden = goldenOutcome(request);
    expectRight(request, std::nullopt, "absent");
    expectUnharmed(request, golden);
    expectRight(request, "", "empty");
    expectUnharmed(request, golden);
  }
}

TEST_F(HostilePayload, TheDescriptorTypeMakesNoDifference) {
  for (const GoldenRequest &request : goldenRequests()) {
    const Outcome golden = goldenOutcome(request);
    for (const DescType type :
         {code("TEXT"), code("utf8"), code("long"), code("aevt"), code("null"), code("reco"),
          code("****"), DescType{0}, DescType{0xFFFFFFFF}}) {
      ++delivered_;
      EXPECT_EQ(deliver(request.eventID, request.payload, type), golden)
          << request.name << " as " << type;
    }
  }
}

TEST_F(HostilePayload, PayloadsFullOfTheSameByteAreAnswered) {
  const std::vector<GoldenRequest> requests = {
      {"insertion", "FIND", {}},  {"lookup", "FNDN", {}},
      {"handshake", "IMHR", {}},  {"preliminary scan", "PRSQ", {}},
      {"final scan", "SCNQ", {}}, {"live bibliography", "LVBQ", {}},
      {"import", "SYNC", {}},     {"retired scan", "Rmci", {}}};
  for (const GoldenRequest &request : requests) {
    expectRight(request, std::string(1 << test_support::effort(20, 18), '\0'), "full of 0");
    // As long as one text may be.
    expectRight(request, std::string(1 << 16, '\xFF'), "full of 255");
    // Bytes of which each makes a part, or a marker, of a citation.
    for (const char byte : {'a', ';', '#', '@', '\\', '!'}) {
      expectRight(request, std::string(1 << test_support::effort(14, 12), byte),
                  "full of " + std::string(1, byte));
    }
  }
  for (const GoldenRequest &request : goldenRequests()) {
    goldenOutcome(request);
  }
}

TEST_F(HostilePayload, EventsThatNobodyRegisteredAreRefused) {
  const auto expectRefused = [this](OSType eventClass, OSType eventID) {
    ++delivered_;
    calls().clear();
    const Answer answer = carrier_.deliver(eventClass, eventID, "payload", true);
    EXPECT_EQ(answer.status, errAEEventNotHandled);
    EXPECT_TRUE(answer.parameters.empty());
    EXPECT_TRUE(calls().empty());
  };
  for (const platform::InstalledHandler &handler : startUp().handlers) {
    for (int bit = 0; bit < 32; ++bit) {
      expectRefused(handler.eventClass ^ 1u << bit, handler.eventID);
      expectRefused(handler.eventClass, handler.eventID ^ 1u << bit);
    }
    expectRefused(handler.eventID, handler.eventClass);
  }
  expectRefused(0, 0);
  expectRefused(0xFFFFFFFF, 0xFFFFFFFF);
  for (const char *answer : {"PREF", "PRSR", "SCNR", "Rmcr", "cite"}) {
    OSType identifier = 0;
    for (int index = 0; index < 4; ++index) {
      identifier = identifier << 8 | static_cast<unsigned char>(answer[index]);
    }
    expectRefused(code("mLeL"), identifier);
    expectRefused(code("BERB"), identifier);
  }
}

TEST_F(HostilePayload, OnlyTheDirectObjectIsRead) {
  for (const GoldenRequest &request : goldenRequests()) {
    if (!request.payload) {
      continue;
    }
    platform::IncomingEvent event{code("mLeL"), 0, {}, request.eventID == "LVBQ"};
    for (const char character : request.eventID) {
      event.eventID = event.eventID << 8 | static_cast<unsigned char>(character);
    }
    const auto data = platform::SharedBytes::copyOf(std::as_bytes(std::span(*request.payload)));
    for (int bit = 0; bit < 32; ++bit) {
      event.parameters.push_back({keyDirectObject ^ 1u << bit, typeChar, *data});
    }
    ++delivered_;
    const Outcome absent = deliver(request.eventID, std::nullopt);
    calls().clear();
    carrier_.sent.clear();
    setGeneratesBibliography(false);
    const Answer answer = carrier_.deliver(event);
    EXPECT_EQ(answer.status, absent.status) << request.name;
    EXPECT_EQ(answer.directObject(), absent.reply) << request.name;
    EXPECT_EQ(calls(), absent.calls) << request.name;
  }
}

}  // namespace
}  // namespace plugin_test
