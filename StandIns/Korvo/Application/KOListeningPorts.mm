#import "KOListeningPorts.h"

#include <fcntl.h>
#include <sys/socket.h>

#include <cstddef>
#include <vector>

namespace {

bool isListening(int descriptor) {
  int accepts = 0;
  socklen_t size = sizeof accepts;
  return getsockopt(descriptor, SOL_SOCKET, SO_ACCEPTCONN, &accepts, &size) == 0 && accepts != 0;
}

// What the run loop watches of a port of whatever kind, its listening descriptor among it.
std::vector<NSInteger> descriptorsOf(id port) {
  NSInteger count = 0;
  [port getFds:nullptr count:&count];
  std::vector<NSInteger> descriptors(static_cast<std::size_t>(count));
  [port getFds:descriptors.data() count:&count];
  descriptors.resize(static_cast<std::size_t>(count));
  return descriptors;
}

}  // namespace

@implementation KOListeningPorts

+ (void)neverWait {
  [[NSNotificationCenter defaultCenter] addObserver:self
                                           selector:@selector(connectionWasMade:)
                                               name:NSConnectionDidInitializeNotification
                                             object:nil];
}

+ (void)connectionWasMade:(NSNotification *)notification {
  for (const NSInteger each : descriptorsOf([[notification object] receivePort])) {
    const int descriptor = static_cast<int>(each);
    if (isListening(descriptor)) {
      fcntl(descriptor, F_SETFL, fcntl(descriptor, F_GETFL) | O_NONBLOCK);
    }
  }
}

@end
