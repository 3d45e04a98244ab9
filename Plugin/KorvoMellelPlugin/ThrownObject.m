#import "ThrownObject.h"

id KOMellelObjectThrownBy(void (*work)(void *), void *context) {
  @try {
    work(context);
  } @catch (id thrown) {
    return thrown;
  }
  return nil;
}
