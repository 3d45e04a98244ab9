// What any program with a window has to wait for: AppKit connected to the display, a menu, a
// window. Says "ready" where korvo does, and ends as korvo does when it is told to.

#import <Cocoa/Cocoa.h>

#include <csignal>
#include <cstdio>

int main() {
  NSAutoreleasePool *pool = [[NSAutoreleasePool alloc] init];
  // As korvo has them: without a window manager windows would have no title bars.
  [[NSUserDefaults standardUserDefaults]
      registerDefaults:[NSDictionary dictionaryWithObjectsAndKeys:@"NO",
                                                                  @"GSBackHandlesWindowDecorations",
                                                                  @"NSWindows95InterfaceStyle",
                                                                  @"NSMenuInterfaceStyle", nil]];
  [NSApplication sharedApplication];
  NSMenu *menu = [[[NSMenu alloc] initWithTitle:@"Bare"] autorelease];
  [menu addItemWithTitle:@"Quit" action:@selector(terminate:) keyEquivalent:@"q"];
  [NSApp setMainMenu:menu];
  NSWindow *window = [[NSWindow alloc] initWithContentRect:NSMakeRect(40, 400, 700, 400)
                                                 styleMask:NSTitledWindowMask | NSClosableWindowMask
                                                   backing:NSBackingStoreBuffered
                                                     defer:NO];
  [window setTitle:@"Bare"];
  [window makeKeyAndOrderFront:nil];
  // AppKit's own handler waits for the next event.
  std::signal(SIGTERM, SIG_DFL);
  std::puts("ready");
  std::fflush(stdout);
  [NSApp run];
  [pool drain];
  return 0;
}
