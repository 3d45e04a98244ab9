#import "WindowOfNib.h"

// Nothing to do. "If the File's Owner is not an instance of NSWindowController or NSViewController,
// then you need to decrement the reference count of the top level objects yourself" (Resource
// Programming Guide, "Nib Files"): ours is one, and frees them itself when it ends. A release here
// would be one too many.
void leaveWindowOfNibTo(NSWindowController *__attribute__((unused)) owner) {}
