#include "SealedMemoryFile.h"

#include <ApplicationServices/MacErrors.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

namespace platform {
namespace {

constexpr int allSeals = F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_WRITE | F_SEAL_SEAL;

bool writeWhole(int descriptor, std::span<const std::byte> contents) {
  while (!contents.empty()) {
    const ssize_t written = write(descriptor, contents.data(), contents.size());
    if (written == 0 || (written < 0 && errno != EINTR)) {
      return false;
    }
    contents = contents.subspan(written < 0 ? 0 : static_cast<std::size_t>(written));
  }
  return true;
}

}  // namespace

std::expected<SealedMemoryFile, OSStatus> SealedMemoryFile::create(
    std::span<const std::byte> contents) {
  SealedMemoryFile file;
  file.descriptor_ = memfd_create("apple-event-data", MFD_CLOEXEC | MFD_ALLOW_SEALING);
  if (file.descriptor_ < 0 || !writeWhole(file.descriptor_, contents) ||
      fcntl(file.descriptor_, F_ADD_SEALS, allSeals) != 0) {
    return std::unexpected(OSStatus{memFullErr});
  }
  if (auto mapped = file.map(file.descriptor_, contents.size()); !mapped) {
    return std::unexpected(mapped.error());
  }
  return file;
}

std::expected<SealedMemoryFile, OSStatus> SealedMemoryFile::open(int descriptor,
                                                                 std::size_t largestSize) {
  // Only memory files have seals, so this also refuses pipes, devices and files on a disk.
  const int seals = fcntl(descriptor, F_GET_SEALS);
  struct stat status{};
  if (seals < 0 || (seals & allSeals) != allSeals || fstat(descriptor, &status) != 0 ||
      status.st_size < 0) {
    return std::unexpected(OSStatus{errAECorruptData});
  }
  if (static_cast<std::size_t>(status.st_size) > largestSize) {
    return std::unexpected(OSStatus{memFullErr});
  }
  SealedMemoryFile file;
  if (auto mapped = file.map(descriptor, static_cast<std::size_t>(status.st_size)); !mapped) {
    return std::unexpected(mapped.error());
  }
  return file;
}

std::expected<void, OSStatus> SealedMemoryFile::map(int descriptor, std::size_t size) {
  if (size == 0) {
    return {};
  }
  void *address = mmap(nullptr, size, PROT_READ, MAP_PRIVATE, descriptor, 0);
  if (address == MAP_FAILED) {
    return std::unexpected(OSStatus{memFullErr});
  }
  contents_ = {static_cast<const std::byte *>(address), size};
  return {};
}

SealedMemoryFile::SealedMemoryFile(SealedMemoryFile &&other) noexcept
    : descriptor_(std::exchange(other.descriptor_, -1)),
      contents_(std::exchange(other.contents_, {})) {}

SealedMemoryFile &SealedMemoryFile::operator=(SealedMemoryFile &&other) noexcept {
  std::swap(descriptor_, other.descriptor_);
  std::swap(contents_, other.contents_);
  return *this;
}

SealedMemoryFile::~SealedMemoryFile() {
  if (!contents_.empty()) {
    munmap(const_cast<std::byte *>(contents_.data()), contents_.size());
  }
  if (descriptor_ >= 0) {
    close(descriptor_);
  }
}

}  // namespace platform
