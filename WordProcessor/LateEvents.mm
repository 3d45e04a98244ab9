#include "LateEvents.h"

#import <Foundation/Foundation.h>
#include <Platform/AutoreleasePool.h>

namespace wordprocessor {

void handleWhatHasArrived() {
  // One turn of the loop may only take in what the next one handles; one that has no time at all
  // fires no timers.
  constexpr int turns = 4;
  constexpr NSTimeInterval time = 0.001;
  const platform::AutoreleasePool pool;
  for (int turn = 0; turn < turns; ++turn) {
    [[NSRunLoop currentRunLoop] runMode:NSDefaultRunLoopMode
                             beforeDate:[NSDate dateWithTimeIntervalSinceNow:time]];
  }
}

}  // namespace wordprocessor
