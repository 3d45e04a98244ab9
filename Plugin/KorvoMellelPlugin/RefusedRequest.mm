#import "RefusedRequest.h"

void logRefusal(SEL handler, formats::RequestLimit limit) {
  NSString *name =
      [[NSStringFromSelector(handler) componentsSeparatedByString:@":"] objectAtIndex:0];
  NSLog(@"KorvoMellelAgent.%@: the request is refused: %s", name, formats::inWords(limit).c_str());
}
