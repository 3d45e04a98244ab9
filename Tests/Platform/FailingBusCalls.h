// Makes calls of the bus library, and of the system calls behind large data, fail one after the
// other.
//
// The test program defines these functions itself; its definitions come before those of the
// libraries, count the calls and pass them on. While a BusFault lives, the calls that it names fail
// instead. One thread, one BusFault at a time.
#pragma once

#include <chrono>
#include <cstddef>
#include <map>
#include <string>

namespace platform_test {

class BusFault {
 public:
  // Counts only.
  BusFault();
  // The call of that function fails with that error (as ENOMEM): the first one for number 0. Which
  // functions are called how often hangs on how the messages arrive; each function's own count
  // hardly does.
  BusFault(std::string function, std::size_t number, int error);
  // From the call of that number on, whatever it is, every call fails.
  BusFault(std::size_t number, int error);
  ~BusFault();
  BusFault(const BusFault &) = delete;
  BusFault &operator=(const BusFault &) = delete;

  // How often each function was called.
  const std::map<std::string, std::size_t> &calls() const { return calls_; }
  bool hasStruck() const { return hasStruck_; }

  // For the replaced functions: the error that the call must fail with, or 0.
  int errorOf(const char *function);

 private:
  bool strikes(const std::string &function) const;

  std::string function_;
  std::size_t number_ = 0;
  int error_ = 0;
  std::map<std::string, std::size_t> calls_;
  std::size_t callsOfAll_ = 0;
  bool hasStruck_ = false;
};

// While one lives, messages come without end: to take in one takes that long, and then there is
// another one. Ends all the same after 2,000, for who would wait for it.
class BusFlood {
 public:
  explicit BusFlood(std::chrono::microseconds timeForEach);
  ~BusFlood();
  BusFlood(const BusFlood &) = delete;
  BusFlood &operator=(const BusFlood &) = delete;

  // Messages taken in so far.
  std::size_t count() const { return count_; }

  // For the replaced function: whether there was another one.
  bool takeOne();

 private:
  std::chrono::microseconds timeForEach_;
  std::size_t count_ = 0;
};

}  // namespace platform_test
