#include "Log.h"

#include "AutoreleasePool.h"

#import <Foundation/Foundation.h>

namespace platform {

void logLine(std::string_view line) {
  const AutoreleasePool pool;
  NSLog(@"%@", [[[NSString alloc] initWithBytes:line.data()
                                         length:line.size()
                                       encoding:NSUTF8StringEncoding] autorelease]);
}

}  // namespace platform
