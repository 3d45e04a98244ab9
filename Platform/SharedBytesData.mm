#include "SharedBytesData.h"

#include <utility>

@interface KorvoSharedBytesData : NSData {
 @public
  platform::SharedBytes _bytes;
}
@end

@implementation KorvoSharedBytesData

// NSData's own would want a subclass that stores bytes.
- (instancetype)init {
  return self;
}

- (NSUInteger)length {
  return _bytes.size();
}

- (const void *)bytes {
  // Callers of NSData expect a pointer also to nothing.
  return _bytes.size() == 0 ? "" : static_cast<const void *>(_bytes.view().data());
}

// The bytes cannot change, so that a copy would be no different.
- (id)copyWithZone:(NSZone *)zone {
  (void)zone;
  return [self retain];
}

@end

namespace platform {

NSData *dataSharing(SharedBytes bytes) {
  KorvoSharedBytesData *data = [[KorvoSharedBytesData alloc] init];
  data->_bytes = std::move(bytes);
  return [data autorelease];
}

}  // namespace platform
