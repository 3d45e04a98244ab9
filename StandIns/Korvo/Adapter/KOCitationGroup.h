// The citations that stand together at one place of the text.
#pragma once

#import <HostContract/HostContract.h>

// One of its arrays at a time: a document has as many groups as citations.
@interface KOCitationGroup : NSObject <KorvoCitationGroup> {
  NSMutableArray *growing_;  // nil: nobody has added a citation since the last question
  NSArray *citations_;       // nil: nobody has asked since then
}
@end
