// The application's menus.
#pragma once

#import <Cocoa/Cocoa.h>

namespace korvo::windows {

// The menus' actions go to the responder chain, except those of the windows, which go to
// `target` (showLibrary:, showNotices:, showStyles:, editSelection:).
void installMainMenu(id target);

}  // namespace korvo::windows
