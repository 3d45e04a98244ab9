#include "RecordingFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <utility>

namespace appleevents {

namespace {

std::string cannotWrite(const std::string &path) {
  return "cannot write " + path + ": " + std::strerror(errno);
}

}  // namespace

std::expected<std::unique_ptr<RecordingFile>, std::string> RecordingFile::create(
    const std::string &path, bool isAnonymous, bool hasTimes) {
  constexpr mode_t ownerOnly = 0600;
  const int descriptor = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, ownerOnly);
  if (descriptor < 0) {
    return std::unexpected(cannotWrite(path));
  }
  std::unique_ptr<RecordingFile> file(new RecordingFile(descriptor, path, isAnonymous, hasTimes));
  file->write(file->lines_.beginning(isAnonymous));
  return file;
}

RecordingFile::~RecordingFile() {
  if (descriptor_ >= 0) {
    close(descriptor_);
  }
}

void RecordingFile::add(RecordedMessage message) {
  if (isAnonymous_) {
    lookAlikes_.replaceIn(message);
  }
  if (!hasTimes_) {
    message.time.reset();
  }
  write(lines_.add(message));
}

void RecordingFile::finish() {
  write(lines_.end());
  if (close(std::exchange(descriptor_, -1)) != 0 && error_.empty()) {
    error_ = cannotWrite(path_);
  }
}

void RecordingFile::write(std::string_view text) {
  while (!text.empty() && error_.empty()) {
    const ssize_t count = ::write(descriptor_, text.data(), text.size());
    if (count >= 0) {
      text.remove_prefix(static_cast<std::size_t>(count));
    } else if (errno != EINTR) {
      error_ = cannotWrite(path_);
    }
  }
}

}  // namespace appleevents
