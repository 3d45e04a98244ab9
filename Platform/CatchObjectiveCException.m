#import "CatchObjectiveCException.h"

id KorvoCatchObjectiveCException(void (*function)(void *), void *context) {
  @try {
    function(context);
  } @catch (id thrown) {
    return thrown;
  }
  return nil;
}
