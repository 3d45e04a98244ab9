// Holds one reference to an Objective-C object for as long as it lives.
#pragma once

#import <Foundation/Foundation.h>

#include <utility>

namespace korvo::adapter {

template <typename Object>
class Owned {
 public:
  Owned() = default;
  Owned(const Owned &other) : object_([other.object_ retain]) {}
  Owned(Owned &&other) noexcept : object_(std::exchange(other.object_, nil)) {}
  Owned &operator=(Owned other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }
  ~Owned() { [object_ release]; }

  // Takes over the reference that alloc, copy or new has made.
  static Owned taking(Object object) {
    Owned owned;
    owned.object_ = object;
    return owned;
  }
  static Owned retaining(Object object) { return taking([object retain]); }

  Object get() const { return object_; }

 private:
  Object object_ = nil;
};

}  // namespace korvo::adapter
