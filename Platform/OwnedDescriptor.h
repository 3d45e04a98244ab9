// A descriptor that is disposed of at the end of its scope.
#pragma once

#include <ApplicationServices/ApplicationServices.h>

namespace platform {

// The null descriptor at first; Apple's functions fill it through its address.
class OwnedDescriptor : public AEDesc {
 public:
  OwnedDescriptor() : AEDesc{typeNull, nullptr} {}
  ~OwnedDescriptor() { AEDisposeDesc(this); }
  OwnedDescriptor(const OwnedDescriptor &) = delete;
  OwnedDescriptor &operator=(const OwnedDescriptor &) = delete;
};

}  // namespace platform
