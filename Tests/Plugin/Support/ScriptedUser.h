// A user at the display: real clicks and keys, by xdotool, while a modal loop runs in this process.
#pragma once

#include <Tests/Support/ChildProcess.h>

#import <Cocoa/Cocoa.h>

#include <memory>
#include <string>

namespace plugin_test {

class ScriptedUser {
 public:
  ScriptedUser() = default;
  // Waits for the user to be done; a user who never ends is ended after some seconds.
  ~ScriptedUser();
  ScriptedUser(const ScriptedUser &) = delete;
  ScriptedUser &operator=(const ScriptedUser &) = delete;

  // What the user will do, in order, once the loop runs.
  void clickOn(NSView *view);
  // Presses the mouse on the menu, draws it to the item below the shown one and lets go.
  void drawToNextItemOf(NSPopUpButton *menu);
  void clickOnCloseBoxOf(NSWindow *window);
  void press(NSWindow *window, const std::string &key);
  void pause();

  // Runs the window modally while the user acts. Returns the code of the modal session; a session
  // that nobody ended is ended after a few seconds with `nobodyEndedIt`.
  NSInteger runModal(NSWindow *window);
  static constexpr NSInteger nobodyEndedIt = -77;

  // Lets the user act on whatever window is modal next, in this process's own loop.
  void start();

 private:
  void clickAt(NSPoint screenPoint);

  std::string script_ = "sleep 0.3\n";
  std::unique_ptr<test_support::ChildProcess> user_;
};

}  // namespace plugin_test
