// A pool for the temporary objects of one turn of a loop.
//
// It is drained by a call at the turn's end, never by the destructor: while an exception passes
// through, the exception itself may live in the pool, and draining would free it under way.
// A pool that was left undrained goes with the pool around it.
#pragma once

#import <Foundation/Foundation.h>

class AutoreleasePool {
 public:
  AutoreleasePool() : pool_([[NSAutoreleasePool alloc] init]) {}
  AutoreleasePool(const AutoreleasePool &) = delete;
  AutoreleasePool &operator=(const AutoreleasePool &) = delete;

  // Call once, last.
  void drain() { [pool_ drain]; }

 private:
  NSAutoreleasePool *pool_;
};
