#import "ScriptedUser.h"

#import "InModalLoop.h"

#include <chrono>
#include <sstream>
#include <vector>

namespace plugin_test {
namespace {

constexpr double longestSession = 4;
constexpr std::chrono::seconds longestUser{5};

}  // namespace

ScriptedUser::~ScriptedUser() {
  if (user_) {
    user_->waitForExit(longestUser);
  }
}

void ScriptedUser::clickAt(NSPoint point) {
  const CGFloat height = NSHeight([[NSScreen mainScreen] frame]);
  std::ostringstream line;
  line << "xdotool mousemove " << static_cast<int>(point.x) << ' '
       << static_cast<int>(height - point.y)
       << " sleep 0.05 mousedown 1 sleep 0.15 mouseup 1\nsleep 0.2\n";
  script_ += line.str();
}

void ScriptedUser::clickOn(NSView *view) {
  const NSRect bounds = [view convertRect:[view bounds] toView:nil];
  clickAt([[view window] convertBaseToScreen:NSMakePoint(NSMidX(bounds), NSMidY(bounds))]);
}

void ScriptedUser::drawToNextItemOf(NSPopUpButton *menu) {
  const NSRect bounds = [menu convertRect:[menu bounds] toView:nil];
  const NSPoint point =
      [[menu window] convertBaseToScreen:NSMakePoint(NSMidX(bounds), NSMidY(bounds))];
  const int x = static_cast<int>(point.x);
  const int y = static_cast<int>(NSHeight([[NSScreen mainScreen] frame]) - point.y);
  // The open menu lies over the button with the shown item in its place, each item as high as the
  // button.
  const int nextItem = y + static_cast<int>(NSHeight(bounds));
  std::ostringstream line;
  line << "xdotool mousemove " << x << ' ' << y << " sleep 0.05 mousedown 1 sleep 0.3 mousemove "
       << x << ' ' << (y + nextItem) / 2 << " sleep 0.1 mousemove " << x << ' ' << nextItem
       << " sleep 0.2\nxdotool mouseup 1\nsleep 0.3\n";
  script_ += line.str();
}

// The windows' decorations are GNUstep's own here: the close box is in the upper right corner.
void ScriptedUser::clickOnCloseBoxOf(NSWindow *window) {
  const NSRect frame = [window frame];
  clickAt(NSMakePoint(NSMaxX(frame) - 12, NSMaxY(frame) - 11));
}

void ScriptedUser::press(NSWindow *window, const std::string &key) {
  script_ += "xdotool search --onlyvisible --name '" + std::string([[window title] UTF8String]) +
             "' windowfocus sleep 0.1 key " + key + "\nsleep 0.2\n";
}

void ScriptedUser::pause() { script_ += "sleep 0.5\n"; }

void ScriptedUser::start() {
  user_ = std::make_unique<test_support::ChildProcess>(
      std::vector<std::string>{"/bin/sh", "-c", script_});
}

NSInteger ScriptedUser::runModal(NSWindow *window) {
  const InModalLoop guard(longestSession, [] {
    [NSApp stopModalWithCode:nobodyEndedIt];
    return true;
  });
  // As the agent does.
  [window makeKeyAndOrderFront:nil];
  start();
  return [NSApp runModalForWindow:window];
}

}  // namespace plugin_test
