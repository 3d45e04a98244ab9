// Pidgin RTF of attributed text.
#pragma once

#import <Foundation/Foundation.h>

namespace korvo::adapter {

// By the plug-in's own conversion where the loaded plug-in offers one (asPidginRTF), so
// that host and plug-in agree to the byte; else by the host's.
NSString *pidginRTF(NSAttributedString *text);

}  // namespace korvo::adapter
