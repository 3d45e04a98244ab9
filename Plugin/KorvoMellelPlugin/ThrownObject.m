#import "ThrownObject.h"

id KOMellelObjectThrownBy(void (*work)(void *), void *context) {
  @try {
    work(context);
  } @catch (id thrown) {
    // The runtime lets go of it at the end of this block.
    return [[thrown retain] autorelease];
  }
  return nil;
}
