#import "RecordingAssertionHandler.h"

#include "Text.h"

@implementation RecordingAssertionHandler

- (void)handleFailureInMethod:(SEL)selector
                       object:(id)object
                         file:(NSString *)fileName
                   lineNumber:(NSInteger)line
                  description:(NSString *)format, ... {
  // The description is compared as it was given: it must be right for a handler that formats it and
  // for one that does not.
  errors.push_back({plugin_test::str(NSStringFromSelector(selector)), object,
                    plugin_test::str(fileName), static_cast<long>(line), plugin_test::str(format)});
  if (raises) {
    [NSException raise:NSInternalInconsistencyException format:@"%@", format];
  }
}

@end
