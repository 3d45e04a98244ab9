#include "Log.h"

#include "AutoreleasePool.h"

#import <Foundation/Foundation.h>

namespace platform {

namespace {

NSString *textOf(std::string_view line, NSStringEncoding encoding) {
  return [[[NSString alloc] initWithBytes:line.data() length:line.size()
                                 encoding:encoding] autorelease];
}

}  // namespace

// What an exception says may be in any encoding; every byte is some character of Latin 1.
void logLine(std::string_view line) {
  const AutoreleasePool pool;
  NSString *text = textOf(line, NSUTF8StringEncoding);
  NSLog(@"%@", text != nil ? text : textOf(line, NSISOLatin1StringEncoding));
}

}  // namespace platform
