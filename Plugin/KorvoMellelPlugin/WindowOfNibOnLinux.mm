#import "WindowOfNib.h"

// The loader leaves its reference to whoever asked it to load (GSXibLoader's -awake:withContext:
// says so), and NSWindowController knows of it only where it has asked itself: its -loadWindow then
// does what stands here. Read in releases 0.29 to 0.32, and counted in tests.
//
// By its name, because to whoever checks ownership a release here looks like the mistake that it
// would be anywhere else.
void leaveWindowOfNibTo(NSWindowController *owner) {
  [[owner window] performSelector:@selector(release)];
}
