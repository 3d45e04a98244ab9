#import "DialogTest.h"

#import <Platform/CatchObjectiveCException.h>

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

std::string DialogTest::thrownByOpening() {
  return str([KorvoCatchObjectiveCException(
      [](void *test) { static_cast<DialogTest *>(test)->open(); }, this) reason]);
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

NSTextField *DialogTest::label() {
  NSArray *views = [[window() contentView] subviews];
  for (NSUInteger index = 0; index < [views count]; ++index) {
    if ([[views objectAtIndex:index] isKindOfClass:[NSTextField class]]) {
      return [views objectAtIndex:index];
    }
  }
  return nil;
}

void DialogTest::expectRoomForEverything() {
  NSView *content = [window() contentView];
  NSArray *views = [content subviews];
  for (NSUInteger index = 0; index < [views count]; ++index) {
    NSView *view = [views objectAtIndex:index];
    EXPECT_TRUE(NSContainsRect([content bounds], [view frame])) << index;
    EXPECT_GE(NSMinX([view frame]), 18);
    EXPECT_GE(NSMinY([view frame]), 18);
    if ([view respondsToSelector:@selector(cell)]) {
      const NSSize needed = [[(NSControl *)view cell] cellSize];
      EXPECT_LE(needed.width, NSWidth([view frame])) << index;
      EXPECT_LE(needed.height, NSHeight([view frame])) << index;
    }
    for (NSUInteger other = index + 1; other < [views count]; ++other) {
      EXPECT_FALSE(NSIntersectsRect([view frame], [[views objectAtIndex:other] frame]));
    }
  }
}

}  // namespace plugin_test
