// What must happen at the end of a scope however it is left, by an exception of a host too.
//
// The action's own exceptions go no further. While another exception passes, one more would end the
// process; and whoever is told last has nobody to tell.
#pragma once

#include <utility>

template <typename Action>
class AtEndOfScope {
 public:
  explicit AtEndOfScope(Action action) : action_(std::move(action)) {}
  ~AtEndOfScope() {
    try {
      action_();
    } catch (...) {
    }
  }
  AtEndOfScope(const AtEndOfScope &) = delete;
  AtEndOfScope &operator=(const AtEndOfScope &) = delete;

 private:
  Action action_;
};
