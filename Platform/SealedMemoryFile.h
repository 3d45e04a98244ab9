// A file that exists in memory only and that nobody can change any more.
//
// The seals are what makes it safe to read another process's file in place: without them its
// sender could shrink the file under the reader (who would die of SIGBUS) or change bytes that
// were already checked. A file that lacks one of the four seals is therefore no SealedMemoryFile.
#pragma once

#include <ApplicationServices/MacTypes.h>

#include <cstddef>
#include <expected>
#include <span>

namespace platform {

class SealedMemoryFile {
 public:
  // Makes a file with a copy of the bytes. memFullErr.
  static std::expected<SealedMemoryFile, OSStatus> create(std::span<const std::byte> contents);

  // Maps the file behind a descriptor that somebody else made; the descriptor stays the caller's.
  // errAECorruptData when it is no memory file or lacks a seal; memFullErr when it is longer than
  // `largestSize` bytes or cannot be mapped.
  static std::expected<SealedMemoryFile, OSStatus> open(int descriptor, std::size_t largestSize);

  SealedMemoryFile(SealedMemoryFile &&other) noexcept;
  SealedMemoryFile &operator=(SealedMemoryFile &&other) noexcept;
  SealedMemoryFile(const SealedMemoryFile &) = delete;
  SealedMemoryFile &operator=(const SealedMemoryFile &) = delete;
  ~SealedMemoryFile();

  std::span<const std::byte> contents() const { return contents_; }
  // Borrowed. -1 for a file that was made elsewhere.
  int descriptor() const { return descriptor_; }

 private:
  SealedMemoryFile() = default;
  std::expected<void, OSStatus> map(int descriptor, std::size_t size);

  int descriptor_ = -1;
  std::span<const std::byte> contents_;
};

}  // namespace platform
