// Opens the plug-in's scan dialog ten times, shows it, closes it, and counts the windows and the
// controllers that have come to their end. Status 0 if all have, and only then.

#import "SmallestAdapter.h"

#import <Cocoa/Cocoa.h>
#import <KOMellelScanController.h>
#include <objc/runtime.h>

#include <cstdio>

static int ended = 0;

// Ends with the object that it is tied to.
@interface EndNote : NSObject
@end

@implementation EndNote
- (void)dealloc {
  ++ended;
  [super dealloc];
}
@end

namespace {

constexpr int turns = 10;

void noteEndOf(id object) {
  static const char key = 0;
  EndNote *note = [[EndNote alloc] init];
  objc_setAssociatedObject(object, &key, note, OBJC_ASSOCIATION_RETAIN);
  [note release];
}

bool showDialog(Class controllerClass, id<KorvoWordProcessorIntegrationAdapter> adapter) {
  NSAutoreleasePool *pool = [[NSAutoreleasePool alloc] init];
  KOMellelScanController *controller =
      [controllerClass openMellelScanControllerWithAdapter:adapter];
  NSWindow *window = [controller window];
  if (window != nil) {
    noteEndOf(controller);
    noteEndOf(window);
    [window makeKeyAndOrderFront:nil];
    [window close];
  }
  [pool drain];
  return window != nil;
}

// AppKit may keep a window until it has drawn what is behind it.
void runLoopForAMoment() {
  NSAutoreleasePool *pool = [[NSAutoreleasePool alloc] init];
  [[NSRunLoop currentRunLoop] runUntilDate:[NSDate dateWithTimeIntervalSinceNow:1]];
  [pool drain];
}

}  // namespace

int main(int argc, char **argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: dialog BUNDLE\n");
    return 2;
  }
  NSAutoreleasePool *pool = [[NSAutoreleasePool alloc] init];
  [NSApplication sharedApplication];
  NSBundle *bundle = [NSBundle bundleWithPath:[NSString stringWithUTF8String:argv[1]]];
  if ([bundle principalClass] == Nil) {
    std::fprintf(stderr, "dialog: %s is no plug-in\n", argv[1]);
    return 1;
  }
  id<KorvoWordProcessorIntegrationAdapter> adapter = [[[SmallestAdapter alloc] init] autorelease];
  int shown = 0;
  for (int turn = 0; turn < turns; ++turn) {
    shown += showDialog(NSClassFromString(@"KOMellelScanController"), adapter) ? 1 : 0;
    runLoopForAMoment();
  }
  [pool drain];
  std::printf("%d dialogs shown; of their windows and controllers %d of %d are gone\n", shown,
              ended, 2 * shown);
  return shown == turns && ended == 2 * turns ? 0 : 1;
}
