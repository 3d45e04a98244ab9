// The fonts of formatted text: a serif face at the size of body text.
#pragma once

#import <Cocoa/Cocoa.h>

namespace korvo::adapter {

// The first installed of a few well-known serif families that has an italic, at 12 points.
NSFont *bodyFont(bool bold, bool italic);

}  // namespace korvo::adapter
