// The ways that are compared: each takes bytes from this process's memory to another process, which
// looks at every one of them and answers with a number made of them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <span>

namespace benchmarks {

class Way {
 public:
  virtual ~Way() = default;
  // Whether it can carry so much at once.
  virtual bool carries(std::size_t size) const = 0;
  // There and back: the number that the other process answered. Ends the program on failure.
  virtual std::uint64_t exchange(std::span<const std::byte> payload) = 0;
};

// The Apple Events of this project: AESendMessage that waits, to a handler of NSAppleEventManager.
std::unique_ptr<Way> makeAppleEventsWay();
// A bare method call of sd-bus with an array of bytes, to a loop of sd_bus_process and
// sd_bus_wait.
std::unique_ptr<Way> makeBusBytesWay();
// The same with a sealed memory file, made for each call.
std::unique_ptr<Way> makeBusFileWay();
// A pipe, and another one back for the answer.
std::unique_ptr<Way> makePipeWay();

// Quick beside any of the ways, and a different number for each payload that is sent.
inline std::uint64_t sumOfWords(std::span<const std::byte> bytes, std::uint64_t sum = 0) {
  std::size_t position = 0;
  for (; position + sizeof sum <= bytes.size(); position += sizeof sum) {
    std::uint64_t word = 0;
    std::memcpy(&word, bytes.data() + position, sizeof word);
    sum += word;
  }
  for (; position < bytes.size(); ++position) {
    sum += std::to_integer<std::uint64_t>(bytes[position]);
  }
  return sum;
}

// Ends the program with a line that says what did not work.
[[noreturn]] void giveUp(const char *what);

}  // namespace benchmarks
