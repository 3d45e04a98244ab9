// Events that come while the scan dialog is open, from another process, over a real bus, into the
// real dialog's modal loop. AppKit on macOS may dispatch them there; where a test asks for it, the
// platform does so as well. (InterruptedScanTest has the cases; this shows that they are the real
// ones.)

#import "Support/DialogTest.h"
#import "Support/InModalLoop.h"
#include "Support/WordProcessor.h"

#include <Formats/ScanRequest.h>
#include <Platform/AppleEventsProcess.h>
#include <Platform/Bus/EventReceiver.h>
#include <Tests/Support/ChildProcess.h>
#include <Tests/Support/RunLoopWait.h>

#import <KorvoMellelAgent+Private.h>

#include <sstream>

namespace plugin_test {
namespace {

using formats::CitationPair;
using test_support::runUntil;
using testing::UnorderedElementsAre;
namespace request = formats::request;

std::string finalScan(std::uint32_t documentID, std::string_view citation) {
  const CitationPair pair = {citation, ""};
  return formats::encodeFinalScanRequest(documentID, false, "", {&pair, 1});
}

class EventsMeanwhile : public DialogTest {
 protected:
  void SetUp() override {
    DialogTest::SetUp();
    offer({"APA"});
    hostScript().formatGroup = [](NSArray *citations) {
      RecordingCitation *citation = [citations objectAtIndex:0];
      return [[[NSAttributedString alloc] initWithString:ns(citation->options["SearchString"])]
          autorelease];
    };
    [agent() setAdapter:host_];
    ASSERT_EQ(wordProcessor_.readLine(), "ready");
    ASSERT_EQ(platform::startReceivingAppleEvents(formats::korvoSignature, {}), noErr);
  }
  void TearDown() override {
    platform::stopReceivingAppleEvents();
    platform::EventReceiver::shared().setNestsHandlers(false);
    [agent() setAdapter:nil];
    DialogTest::TearDown();
  }

  static Class agent() { return NSClassFromString(@"KorvoMellelAgent"); }

  // One request of each kind that knows a document, while the dialog is open for document 7.
  static void interrupt() {
    const CitationPair nine = {"nine", ""};
    const CitationPair live = {"live", ""};
    haveSent(request::preliminaryScan, formats::encodePreliminaryScanRequest(9, {&nine, 1}));
    haveSent(request::finalScan, finalScan(11, "eleven"));
    haveSent(request::liveBibliography,
             formats::encodeLiveBibliographyRequest(8, false, "APA", {&live, 1}));
  }

  std::vector<std::string> told() const {
    std::istringstream output(wordProcessor_.standardOutput());
    std::vector<std::string> lines;
    for (std::string line; std::getline(output, line);) {
      lines.push_back(line);
    }
    lines.erase(lines.begin());  // "ready"
    return lines;
  }

  static void pressButton() {
    NSButton *button = [(KOMellelScanController *)[[NSApp modalWindow] windowController]
        valueForKey:@"generateCopyWithBibInStyleButton"];
    [button performClick:nil];
  }

  test_support::ChildProcess wordProcessor_{{WORD_PROCESSOR}};

 private:
  const InModalLoop patience_{10, [] {
                                ADD_FAILURE() << "a dialog that nobody ended";
                                [NSApp stopModalWithCode:0];
                                return false;
                              }};
};

TEST_F(EventsMeanwhile, AreAnsweredForTheirDocumentsAndTheScanThatWaitsForItsOwn) {
  platform::EventReceiver::shared().setNestsHandlers(true);
  bool isInterrupted = false;
  NSUInteger windows = 0;
  std::vector<std::string> toldMeanwhile;
  const InModalLoop user(0.05, [&] {
    if (!isInterrupted) {
      isInterrupted = true;
      windows = [[NSApp windows] count];
      interrupt();
      return false;
    }
    if (told().size() < 3) {
      return false;
    }
    toldMeanwhile = told();
    EXPECT_EQ([[NSApp windows] count], windows);
    pressButton();
    return true;
  });
  ASSERT_EQ(haveSent(request::finalScan, finalScan(7, "seven")), noErr);
  ASSERT_TRUE(runUntil([&] { return told().size() >= 4; })) << told().size();
  EXPECT_THAT(toldMeanwhile, UnorderedElementsAre("PRSR 9 nine", "Rmcr 11", "LVBQ 0 APA live"));
  EXPECT_EQ(told().back(), "SCNR 7 APA seven");
  EXPECT_EQ(told().size(), 4u);
}

TEST_F(EventsMeanwhile, WaitForTheDialogWhereNoTestAsksForMore) {
  std::vector<std::vector<std::string>> toldAtDialog;
  const InModalLoop user(0.3, [&] {
    toldAtDialog.push_back(told());
    if (toldAtDialog.size() == 1) {
      interrupt();
      return false;
    }
    pressButton();
    return toldAtDialog.size() == 3;
  });
  ASSERT_EQ(haveSent(request::finalScan, finalScan(7, "seven")), noErr);
  ASSERT_TRUE(runUntil([&] { return told().size() >= 4; })) << told().size();
  ASSERT_EQ(toldAtDialog.size(), 3u) << "one dialog after the other";
  EXPECT_THAT(toldAtDialog[1], testing::IsEmpty());
  EXPECT_THAT(told(), UnorderedElementsAre("SCNR 7 APA seven", "PRSR 9 nine", "SCNR 11 APA eleven",
                                           "LVBQ 0 APA live"));
}

}  // namespace
}  // namespace plugin_test
