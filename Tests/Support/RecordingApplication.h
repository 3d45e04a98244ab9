// Takes NSApp's place, so that the agent runs without a display: windows, hiding and the modal loop
// are logged (see CallLog.h).
#pragma once

#import <Cocoa/Cocoa.h>

#include <functional>
#include <vector>

namespace test_support {

// What happens while the modal loop runs.
std::function<void()> &duringModalLoop();

}  // namespace test_support

// The delegates by which the agent knows the host's windows, and one that it does not know.
@interface KOMainWindowController : NSObject
@end
@interface KOReferenceEditorWindowController : NSObject
@end
@interface KOMainWindowControllerOfAnother : KOMainWindowController
@end

@interface RecordingWindow : NSObject {
 @public
  id windowDelegate;
  NSInteger windowLevel;
}
@end

@interface RecordingApplication : NSObject {
 @public
  BOOL hidden;
  NSMutableArray *allWindows;
}
@end

// Takes the scan dialog's place: its outcome is scripted.
@interface ScriptedScanController : NSObject {
 @public
  RecordingWindow *scriptedWindow;
  int32_t action;
  id style;
}
@end
