// What is left of the scan dialog when the scan is over: nothing.

#import "Support/DialogTest.h"
#import "Support/InModalLoop.h"
#import "Support/ReplacedMethod.h"

#include <Formats/EventTable.h>
#include <Formats/ScanRequest.h>
#include <Tests/Support/RecordingCarrier.h>

#import <KorvoMellelAgent+Private.h>

namespace plugin_test {
namespace {

// The objects of a class, and of no subclass, that have come to their end since it was made. One at
// a time for each tag.
template <typename Tag>
class Ends {
 public:
  explicit Ends(Class of) : class_(of), dealloc_(of, @selector(dealloc), asMethod(end)) {
    shared = this;
  }
  int count() const { return count_; }

 private:
  static void end(id object, SEL selector) {
    if ([object class] == shared->class_) {
      ++shared->count_;
    }
    shared->dealloc_.callOriginal(object, selector);
  }

  inline static Ends *shared = nullptr;

  Class class_;
  ReplacedMethod dealloc_;
  int count_ = 0;
};

class ScanDialogEnd : public DialogTest {
 protected:
  void SetUp() override {
    DialogTest::SetUp();
    offer({"APA"});
    [agent() setAdapter:host_];
  }
  void TearDown() override {
    [agent() setAdapter:nil];
    DialogTest::TearDown();
  }

  static Class agent() { return NSClassFromString(@"KorvoMellelAgent"); }

  // A final scan without a style; the function ends the dialog.
  void scan(std::function<void(NSWindow *)> end) {
    NSAutoreleasePool *pool = [[NSAutoreleasePool alloc] init];
    bool hasEnded = false;
    const InModalLoop user(0.05, [&] {
      hasEnded = [[NSApp modalWindow] isVisible];
      end([NSApp modalWindow]);
      return true;
    });
    const formats::CitationPair citation = {"Smith", ""};
    carrier_.deliver(formats::mellelSignature, formats::request::finalScan,
                     formats::encodeFinalScanRequest(7, false, "", {&citation, 1}));
    EXPECT_TRUE(hasEnded);
    [pool drain];
  }

  test_support::RecordingCarrier carrier_;
};

TEST_F(ScanDialogEnd, EachScanGivesItsWindowAndItsControllerBack) {
  const Ends<NSWindow> windows([NSWindow class]);
  const Ends<KOMellelScanController> controllers(NSClassFromString(@"KOMellelScanController"));
  for (int turn = 1; turn <= 10; ++turn) {
    scan([](NSWindow *window) { [window performClose:nil]; });
    EXPECT_EQ(windows.count(), turn);
    EXPECT_EQ(controllers.count(), turn);
  }
}

}  // namespace
}  // namespace plugin_test
