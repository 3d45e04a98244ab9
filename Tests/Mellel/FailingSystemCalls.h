// Makes the system calls fail that documents are read and written with, one after the other.
//
// The test program is linked so that these calls come here first (--wrap in CMakeLists.txt). While
// a Fault lives, calls are counted from 0, and those that it names fail without reaching the
// system; without one they pass through. One thread, one Fault at a time.
#pragma once

#include <cstddef>
#include <functional>
#include <limits>
#include <string>
#include <vector>

namespace mellel_test {

struct FaultPlan {
  static constexpr std::size_t never = std::numeric_limits<std::size_t>::max();

  std::size_t firstFailure = never;  // number of the first call that fails
  std::size_t failures = 1;          // how many fail from there on, one after the other
  int error = 0;  // what errno says of them; 0: the call claims to have moved 0 bytes
  std::size_t largestTransfer = never;      // bytes that a read or write moves at most
  std::function<void()> afterReading = {};  // what another program does behind each read
};

class Fault {
 public:
  explicit Fault(const FaultPlan &plan);
  ~Fault();
  Fault(const Fault &) = delete;
  Fault &operator=(const Fault &) = delete;

  // The names of the calls made since, in order.
  const std::vector<std::string> &calls() const { return calls_; }

  // For the replaced calls: notes the call; whether it must fail, with errno set.
  bool strikes(const char *call);
  std::size_t largestTransfer() const { return plan_.largestTransfer; }
  void tellOfReading() const {
    if (plan_.afterReading) {
      plan_.afterReading();
    }
  }
  bool movesNothing() const { return plan_.error == 0; }

 private:
  FaultPlan plan_;
  std::vector<std::string> calls_;
};

}  // namespace mellel_test
