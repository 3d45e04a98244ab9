// Bytes that never change and are shared instead of copied.
//
// A document's payload can be a hundred mebibytes. It is copied once on its way from the sender's
// buffer to the receiver's eyes: into the sealed memory file that both processes map. So data
// above `largestInlineSize` is put into such a file as soon as it is made a descriptor, and
// everything after that (parameters, events, replies, the bus) hands on references.
#pragma once

#include <ApplicationServices/MacTypes.h>

#include <cstddef>
#include <expected>
#include <memory>
#include <span>

namespace platform {

class SealedMemoryFile;

// Data up to this many bytes travels inside the bus's message, above it in a memory file.
inline constexpr std::size_t largestInlineSize = 1'048'576;

class SharedBytes {
 public:
  // No bytes.
  SharedBytes() = default;
  // Bytes inside something else, which is kept alive by `owner`.
  SharedBytes(std::span<const std::byte> view, std::shared_ptr<const void> owner);
  // The contents of a memory file.
  explicit SharedBytes(const std::shared_ptr<const SealedMemoryFile> &file);

  // memFullErr when there is no memory or no memory file to be had.
  static std::expected<SharedBytes, OSStatus> copyOf(std::span<const std::byte> bytes);

  // Valid as long as this or any copy of this.
  std::span<const std::byte> view() const { return view_; }
  std::size_t size() const { return view_.size(); }

  // The memory file that holds exactly these bytes; null when they lie elsewhere.
  const SealedMemoryFile *memoryFile() const { return memoryFile_; }

 private:
  std::span<const std::byte> view_;
  std::shared_ptr<const void> owner_;
  const SealedMemoryFile *memoryFile_ = nullptr;
};

}  // namespace platform
