// Something that happens inside a modal loop of this process, without a user.
#pragma once

#include <functional>

namespace plugin_test {

// Calls a function again and again, inside of whatever modal loop runs then, until it says that it
// is done or this object ends. The function may end the loop: it is woken afterwards.
class InModalLoop {
 public:
  InModalLoop(double secondsBetween, std::function<bool()> function);
  ~InModalLoop();
  InModalLoop(const InModalLoop &) = delete;
  InModalLoop &operator=(const InModalLoop &) = delete;

 private:
  static void call(void *self);

  std::function<bool()> function_;
  void *timer_;
};

}  // namespace plugin_test
