#import "ProgrammingError.h"

void reportProgrammingError(SEL method, id object, NSInteger lineNumber, NSString *description) {
  NSString *file = [NSString stringWithUTF8String:"Plugin/KorvoMellelPlugin/KorvoMellelAgent"];
  [[NSAssertionHandler currentHandler] handleFailureInMethod:method
                                                      object:object
                                                        file:file != nil ? file : @"<Unknown File>"
                                                  lineNumber:lineNumber
                                                 description:description];
}

id required(id object, NSString *what) {
  if (object == nil) {
    [NSException raise:NSInternalInconsistencyException format:@"the host provided no %@", what];
  }
  return object;
}
