// An autorelease pool for the length of a scope.
#pragma once

#import <Foundation/Foundation.h>

namespace platform {

class AutoreleasePool {
 public:
  AutoreleasePool() : pool_([[NSAutoreleasePool alloc] init]) {}
  ~AutoreleasePool() { [pool_ release]; }
  AutoreleasePool(const AutoreleasePool &) = delete;
  AutoreleasePool &operator=(const AutoreleasePool &) = delete;

 private:
  NSAutoreleasePool *pool_;
};

}  // namespace platform
