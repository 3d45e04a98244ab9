#include "InputFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <utility>

namespace appleevents {

namespace {

class InputDescriptor {
 public:
  explicit InputDescriptor(const std::string &path)
      : descriptor_(path == "-" ? STDIN_FILENO : open(path.c_str(), O_RDONLY | O_CLOEXEC)) {}
  ~InputDescriptor() {
    if (descriptor_ > STDIN_FILENO) {
      close(descriptor_);
    }
  }
  InputDescriptor(const InputDescriptor &) = delete;
  InputDescriptor &operator=(const InputDescriptor &) = delete;
  InputDescriptor(InputDescriptor &&) = delete;
  InputDescriptor &operator=(InputDescriptor &&) = delete;

  int number() const { return descriptor_; }

 private:
  int descriptor_;
};

}  // namespace

std::expected<std::string, Failure> readInput(const std::string &path) {
  const std::string name = path == "-" ? "standard input" : path;
  const auto failed = [&](const std::string &why) {
    return std::unexpected(Failure{Status::brokenInput, "cannot read " + name + ": " + why});
  };
  const InputDescriptor input(path);
  if (input.number() < 0) {
    return failed(std::strerror(errno));
  }
  constexpr std::size_t step = 65536;
  std::string bytes;
  for (;;) {
    const std::size_t size = bytes.size();
    bytes.resize(size + step);
    const ssize_t count = read(input.number(), bytes.data() + size, step);
    bytes.resize(size + static_cast<std::size_t>(count > 0 ? count : 0));
    if (count == 0) {
      return bytes;
    }
    if (count < 0 && errno != EINTR) {
      return failed(std::strerror(errno));
    }
    if (bytes.size() > largestInput) {
      return failed("it is larger than 1 GiB");
    }
  }
}

}  // namespace appleevents
