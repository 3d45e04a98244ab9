// Who lets go of the window of a nib, where the nib's owner is a window controller.
//
// A nib's top-level objects come into being with one reference more than their users hold. Whose it
// is differs, and nothing at run time tells: so there is one source for each Cocoa, of which a
// build takes its own.
#pragma once

#import <Cocoa/Cocoa.h>

// To be called once, after +[NSBundle loadNibNamed:owner:] with this owner. From then on the window
// lives as long as the controller, or whoever else retains it. nil, and a controller without a
// window, are harmless.
void leaveWindowOfNibTo(NSWindowController *owner);
