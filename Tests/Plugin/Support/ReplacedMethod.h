// Another body for a method, for a time.
#pragma once

#import <Foundation/Foundation.h>
#include <objc/runtime.h>

namespace plugin_test {

template <typename Function>
IMP asMethod(Function *function) {
  return reinterpret_cast<IMP>(reinterpret_cast<void (*)()>(function));
}

// Replaces a method of the plug-in for the length of a scope.
class ReplacedMethod {
 public:
  ReplacedMethod(Class of, SEL selector, IMP replacement)
      : method_(class_getInstanceMethod(of, selector)),
        original_(method_setImplementation(method_, replacement)) {}
  ~ReplacedMethod() { method_setImplementation(method_, original_); }
  ReplacedMethod(const ReplacedMethod &) = delete;
  ReplacedMethod &operator=(const ReplacedMethod &) = delete;

  // Calls the replaced one, which takes no arguments and returns nothing.
  void callOriginal(id object, SEL selector) const {
    reinterpret_cast<void (*)(id, SEL)>(reinterpret_cast<void (*)()>(original_))(object, selector);
  }

 private:
  Method method_;
  IMP original_;
};

}  // namespace plugin_test
