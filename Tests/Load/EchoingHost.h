// A host for tests of load: every operation is cheap, and a formatted citation is the text that was
// looked for, so that each answer shows which request it belongs to.
#pragma once

#import <Tests/Support/PassiveHost.h>

@interface EchoingHost : PassiveHost {
  id<KorvoLibrary> library;
  id<KorvoReference> reference;
  id<KorvoBibStyle> style;
  NSSet *found;
}
@end
