// The service object of a host with one reference and one style. Every operation of the contract is
// here, each as short as it can be; a real host replaces them one by one.
#pragma once

#import <HostContract/HostContract.h>

#import <Cocoa/Cocoa.h>

@interface SmallestAdapter : NSObject <KorvoWordProcessorIntegrationAdapter> {
  id<KorvoReference> book;
  id<KorvoBibStyle> style;
}
@end
