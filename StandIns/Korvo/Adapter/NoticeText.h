// The looks of what the host shows to the user in notices.
#pragma once

#import <Cocoa/Cocoa.h>

@class KOReference;

namespace korvo::adapter {

// Attribute dictionaries, autoreleased.
NSDictionary *bodyTextAttributes();
NSDictionary *subtitleTextAttributes();
NSDictionary *notesTextAttributes();

// "Smith, John (2001). On Heat. [SMI2001]", the title in italics, without a line end. What
// the reference lacks is left out.
NSAttributedString *summaryWithTitle(KOReference *reference);

}  // namespace korvo::adapter
