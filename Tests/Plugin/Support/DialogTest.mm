#import "DialogTest.h"

namespace plugin_test {
namespace {

NSString *const lastStyleKey = @"Last Style Used For Mellel Scan";

}  // namespace

void DialogTest::SetUpTestSuite() {
  NSAutoreleasePool *pool = [[NSAutoreleasePool alloc] init];
  NSDictionary *ownDecorations =
      [NSDictionary dictionaryWithObject:@"NO" forKey:@"GSBackHandlesWindowDecorations"];
  [[NSUserDefaults standardUserDefaults] registerDefaults:ownDecorations];
  [NSApplication sharedApplication];
  [NSApp finishLaunching];
  NSBundle *bundle = [NSBundle bundleWithPath:[NSString stringWithUTF8String:PLUGIN_BUNDLE]];
  [[bundle principalClass] class];
  [pool drain];
}

void DialogTest::SetUp() {
  pool_ = [[NSAutoreleasePool alloc] init];
  host_ = [[RecordingHost alloc] init];
  hostScript() = {};
  setLastStyle(nil);
  log_.emplace();
  test_support::calls().clear();
}

void DialogTest::TearDown() {
  log_.reset();
  [window() close];
  [pool_ drain];
  [host_ release];
}

void DialogTest::offer(std::initializer_list<const char *> styleNames) {
  NSMutableArray *favorites = [NSMutableArray array];
  for (const char *name : styleNames) {
    [host_ addStyle:name];
    [favorites addObject:ns(name)];
  }
  host_->favorites = favorites;
}

void DialogTest::open() {
  controller_ =
      [NSClassFromString(@"KOMellelScanController") openMellelScanControllerWithAdapter:host_];
}

void DialogTest::setLastStyle(id name) {
  if (name == nil) {
    [[NSUserDefaults standardUserDefaults] removeObjectForKey:lastStyleKey];
  } else {
    [[NSUserDefaults standardUserDefaults] setObject:name forKey:lastStyleKey];
  }
}

std::string DialogTest::lastStyle() {
  return str([[NSUserDefaults standardUserDefaults] stringForKey:lastStyleKey]);
}

std::string DialogTest::selectedStyle() {
  RecordingStyle *style = (RecordingStyle *)[controller_ selectedBibStyle];
  return style == nil ? "(nil)" : style->styleName;
}

}  // namespace plugin_test
