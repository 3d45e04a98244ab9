// A pool for the temporary objects of a loop, drained once in a while.
//
// It is drained by calls, never by the destructor: while an exception passes through, the exception
// itself may live in the pool, and draining would free it under way. A pool that was left undrained
// goes with the pool around it.
#pragma once

#import <Foundation/Foundation.h>

class LoopPool {
 public:
  LoopPool() : pool_([[NSAutoreleasePool alloc] init]) {}
  LoopPool(const LoopPool &) = delete;
  LoopPool &operator=(const LoopPool &) = delete;

  // Call at the end of each turn. Making a pool costs about as much as a short string, and a turn
  // leaves a few of these: so one pool serves several turns.
  void endTurn() {
    constexpr int turnsOfAPool = 16;
    if (++turns_ == turnsOfAPool) {
      turns_ = 0;
      [pool_ drain];
      pool_ = [[NSAutoreleasePool alloc] init];
    }
  }

  // Call once, after the loop.
  void drain() { [pool_ drain]; }

 private:
  NSAutoreleasePool *pool_;
  int turns_ = 0;
};
