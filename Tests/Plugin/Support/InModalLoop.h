// Something that happens inside a modal loop of this process, without a user.
#pragma once

#include <functional>

namespace plugin_test {

// Calls a function once, inside of whatever modal loop runs when the time has come. The function
// may end the loop: it is woken afterwards. When this ends earlier, the function is not called.
class InModalLoop {
 public:
  InModalLoop(double seconds, std::function<void()> function);
  ~InModalLoop();
  InModalLoop(const InModalLoop &) = delete;
  InModalLoop &operator=(const InModalLoop &) = delete;

 private:
  static void call(void *self);

  std::function<void()> function_;
  void *timer_;
};

}  // namespace plugin_test
