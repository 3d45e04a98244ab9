#include "RunLoopWait.h"

#include <Platform/AutoreleasePool.h>

#import <Foundation/Foundation.h>

namespace test_support {

bool runUntil(const std::function<bool()> &condition, std::chrono::milliseconds timeOut) {
  const auto deadline = std::chrono::steady_clock::now() + timeOut;
  while (!condition()) {
    if (std::chrono::steady_clock::now() > deadline) {
      return false;
    }
    const platform::AutoreleasePool pool;
    [[NSRunLoop currentRunLoop] runMode:NSDefaultRunLoopMode
                             beforeDate:[NSDate dateWithTimeIntervalSinceNow:0.02]];
  }
  return true;
}

}  // namespace test_support
