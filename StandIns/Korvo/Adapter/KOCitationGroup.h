// The citations that stand together at one place of the text.
#pragma once

#import <HostContract/HostContract.h>

@interface KOCitationGroup : NSObject <KorvoCitationGroup> {
  NSMutableArray *citations_;
  NSArray *copy_;  // of the citations, as long as they stay; nil: nobody has asked
}
@end
