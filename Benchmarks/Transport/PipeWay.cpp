#include "Partner.h"
#include "Way.h"

#include <unistd.h>

#include <array>
#include <cerrno>
#include <vector>

namespace benchmarks {
namespace {

// What an ordinary reader would take at once; also the size of a pipe.
constexpr std::size_t pieceSize = 65'536;

struct Pipe {
  Pipe() {
    if (pipe(ends.data()) != 0) {
      giveUp("A pipe could not be made");
    }
  }
  ~Pipe() {
    close(ends[0]);
    close(ends[1]);
  }
  Pipe(const Pipe &) = delete;
  Pipe &operator=(const Pipe &) = delete;

  void writeWhole(std::span<const std::byte> bytes) const {
    while (!bytes.empty()) {
      const ssize_t written = write(ends[1], bytes.data(), bytes.size());
      if (written < 0 && errno != EINTR) {
        giveUp("A pipe could not be written");
      }
      bytes = bytes.subspan(written < 0 ? 0 : static_cast<std::size_t>(written));
    }
  }

  std::span<std::byte> readSome(std::span<std::byte> room) const {
    ssize_t count = -1;
    do {
      count = read(ends[0], room.data(), room.size());
    } while (count < 0 && errno == EINTR);
    if (count <= 0) {
      giveUp("A pipe could not be read");
    }
    return room.first(static_cast<std::size_t>(count));
  }

  template <typename Value>
  Value readValue() const {
    Value value{};
    auto rest = std::as_writable_bytes(std::span(&value, 1));
    while (!rest.empty()) {
      rest = rest.subspan(readSome(rest).size());
    }
    return value;
  }

  std::array<int, 2> ends{};
};

class PipeWay final : public Way {
 public:
  bool carries(std::size_t) const override { return true; }

  std::uint64_t exchange(std::span<const std::byte> payload) override {
    const std::uint64_t size = payload.size();
    there_.writeWhole(std::as_bytes(std::span(&size, 1)));
    there_.writeWhole(payload);
    return back_.readValue<std::uint64_t>();
  }

 private:
  void serve(const std::function<void()> &ready) const {
    std::vector<std::byte> room(pieceSize);
    ready();
    while (true) {
      auto left = there_.readValue<std::uint64_t>();
      std::uint64_t sum = 0;
      while (left > 0) {
        // Whole words but for the last piece: a word must not be torn.
        std::size_t filled = 0;
        const std::size_t wanted = std::min<std::uint64_t>(left, pieceSize);
        while (filled < wanted) {
          filled += there_.readSome(std::span(room).subspan(filled, wanted - filled)).size();
        }
        sum = sumOfWords(std::span(room).first(filled), sum);
        left -= filled;
      }
      back_.writeWhole(std::as_bytes(std::span(&sum, 1)));
    }
  }

  Pipe there_;
  Pipe back_;
  Partner receiver_{[this](const std::function<void()> &ready) { serve(ready); }};
};

}  // namespace

std::unique_ptr<Way> makePipeWay() { return std::make_unique<PipeWay>(); }

}  // namespace benchmarks
