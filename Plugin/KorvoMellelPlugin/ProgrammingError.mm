#import "ProgrammingError.h"

void reportProgrammingError(SEL method, id object, NSInteger lineNumber, NSString *description) {
  NSString *file = [NSString stringWithUTF8String:"Plugin/KorvoMellelPlugin/KorvoMellelAgent"];
// The description is the format on purpose, and no percent sign stands in it: a handler that
// formats and one that does not both have the text.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-security"
  [[NSAssertionHandler currentHandler] handleFailureInMethod:method
                                                      object:object
                                                        file:file != nil ? file : @"<Unknown File>"
                                                  lineNumber:lineNumber
                                                 description:description];
#pragma GCC diagnostic pop
}

id required(id object, NSString *what) {
  if (object == nil) {
    [NSException raise:NSInternalInconsistencyException format:@"the host provided no %@", what];
  }
  return object;
}
