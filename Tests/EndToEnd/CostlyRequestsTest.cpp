// Requests that cost their sender nothing, sent to the real host: a document that is mostly empty
// is a memory file without memory.
#include "Applications.h"

#include <Formats/EventTable.h>
#include <Tests/Support/EventSending.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <fstream>

namespace {

using namespace endtoend;
using testing::HasSubstr;
using namespace std::string_literals;

// The most memory that the process ever had.
long peakKibibytes(pid_t process) {
  std::ifstream status("/proc/" + std::to_string(process) + "/status");
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with("VmHWM:")) {
      return std::stol(line.substr(6));
    }
  }
  return -1;
}

struct Costly {
  const char *name;
  formats::FourCharacterCode eventID;
  std::string payload;
};

TEST(CostlyRequests, AreRefusedAtOnceAndCostTheHostNothing) {
  Host host;
  ASSERT_TRUE(host.isReady()) << host.process().standardError();
  const std::string finalScan = "\0\0\0\0\0\7\0\0\0\0apa\0\0\0\0\1"s;
  // NOLINTBEGIN(bugprone-string-constructor): that they are long is the point.
  const std::vector<Costly> requests = {
      {"250 MiB of NULs", formats::request::preliminaryScan, std::string(250 * 1'048'576, '\0')},
      {"8 million empty citations", formats::request::finalScan,
       finalScan + std::string(16'000'000, '\0')},
      {"a citation of 30 MB", formats::request::finalScan,
       finalScan + std::string(30'000'000, 'a') + "\0\0"s},
      {"a group of a hundred million parts", formats::request::liveBibliography,
       finalScan + std::string(100'000'000, ';') + "\0\0"s}};
  // NOLINTEND(bugprone-string-constructor)
  for (const Costly &request : requests) {
    const long before = peakKibibytes(host.process().number());
    const auto start = std::chrono::steady_clock::now();
    // With a reply, to see when it is over; a cancel would find no word processor here.
    const auto outcome =
        test_support::sendAndWait(formats::korvoSignature, formats::mellelSignature,
                                  request.eventID, request.payload, 60 * 60);
    EXPECT_EQ(outcome.status, noErr) << request.name;
    EXPECT_FALSE(outcome.reply) << request.name;
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5)) << request.name;
    EXPECT_LT(peakKibibytes(host.process().number()) - before, KIBIBYTES_OF_A_REFUSAL)
        << request.name;
  }
  EXPECT_THAT(host.process().standardError(),
              HasSubstr("the request is refused: it has more than"));
  const Scan copy = scan("draft-textedit.rtf", {"--style", "apa"});
  EXPECT_EQ(copy.result.status, 0) << copy.result.standardError;
}

// The host knows at once that it has no room; so does its user.
TEST(CostlyRequests, ThatFindNoRoomAreToldAtOnce) {
  Host host;
  ASSERT_TRUE(host.isReady()) << host.process().standardError();
  const std::string withoutStyle = "\0\0\0\0\0\7\0\0\0\0\0\0\0\0\0"s;
  ASSERT_EQ(test_support::sendOneWay(formats::korvoSignature, formats::mellelSignature,
                                     formats::request::finalScan, withoutStyle),
            noErr);
  ASSERT_TRUE(host.process().waitForLine("dialog: open"));
  // What waits behind the dialog fills the host up, but for less than a document's citations take.
  const std::string filling(256 * 1'048'576 - 2'048, '\0');
  ASSERT_EQ(test_support::sendOneWay(formats::korvoSignature, formats::mellelSignature,
                                     formats::request::preliminaryScan, filling),
            noErr);
  const auto start = std::chrono::steady_clock::now();
  const Result check = run({program("mellel"), "check", example("draft-textedit.rtf").string()});
  EXPECT_EQ(check.status, 4);
  EXPECT_THAT(check.standardError, HasSubstr("Korvo has no room for the request"));
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
}

TEST(CostlyRequests, AreNotSentByTheWordProcessor) {
  Host host;
  const TemporaryDirectory directory;
  const auto draft = directory.path() / "long.rtf";
  std::string rtf = "{\\rtf1 ";
  for (int citation = 0; citation < 1'048'577; ++citation) {
    rtf += "\\{a\\}";
  }
  writeFile(draft, rtf + "}");
  const Scan copy = scanFile(draft, {"--style", "apa"});
  EXPECT_EQ(copy.result.status, 4);
  EXPECT_THAT(copy.result.standardError,
              HasSubstr("more than Korvo takes: it has more than 1048576 citations"));
  EXPECT_EQ(copy.copy, "");
}

}  // namespace
