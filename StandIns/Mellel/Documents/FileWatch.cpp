#include "FileWatch.h"

#include <sys/inotify.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <filesystem>
#include <utility>

namespace mellel::documents {

using console::Failure;
using console::Status;

FileWatch::FileWatch(int descriptor, std::string name)
    : descriptor_(descriptor), name_(std::move(name)) {}

FileWatch::FileWatch(FileWatch &&other) noexcept
    : descriptor_(std::exchange(other.descriptor_, -1)), name_(std::move(other.name_)) {}

FileWatch::~FileWatch() {
  if (descriptor_ >= 0) {
    close(descriptor_);
  }
}

std::expected<FileWatch, Failure> FileWatch::start(const std::string &path) {
  std::error_code error;
  const std::filesystem::path file = std::filesystem::canonical(path, error);
  const int descriptor = error ? -1 : inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
  FileWatch watch(descriptor, file.filename().string());
  // The folder, because an editor may put a new file in the old one's place.
  if (descriptor < 0 ||
      inotify_add_watch(descriptor, file.parent_path().c_str(), IN_CLOSE_WRITE | IN_MOVED_TO) < 0) {
    return std::unexpected(
        Failure{Status::brokenDocumentOrReply,
                "cannot watch " + path + ": " + (error ? error.message() : std::strerror(errno))});
  }
  return watch;
}

bool FileWatch::wasSaved() {
  bool wasSaved = false;
  alignas(inotify_event) std::array<char, 16'384> buffer{};
  for (;;) {
    const ssize_t size = read(descriptor_, buffer.data(), buffer.size());
    if (size <= 0) {
      return wasSaved;
    }
    for (std::size_t offset = 0; offset < static_cast<std::size_t>(size);) {
      inotify_event event{};
      std::memcpy(&event, buffer.data() + offset, sizeof event);
      const char *const name = buffer.data() + offset + sizeof event;
      // Too much happened to be told: the file may be concerned.
      const bool isConcerned = (event.mask & IN_Q_OVERFLOW) != 0;
      wasSaved = wasSaved || isConcerned || (event.len > 0 && name_ == name);
      offset += sizeof event + event.len;
    }
  }
}

}  // namespace mellel::documents
