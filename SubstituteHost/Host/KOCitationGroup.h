// The citations that stand together at one place of the text.
#pragma once

#import <HostContract/HostContract.h>

@interface KOCitationGroup : NSObject <KorvoCitationGroup> {
  NSMutableArray *citations_;
}
@end
