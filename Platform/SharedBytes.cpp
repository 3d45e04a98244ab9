#include "SharedBytes.h"

#include "SealedMemoryFile.h"

#include <ApplicationServices/MacErrors.h>

#include <new>
#include <utility>
#include <vector>

namespace platform {

SharedBytes::SharedBytes(std::span<const std::byte> view, std::shared_ptr<const void> owner)
    : view_(view), owner_(std::move(owner)) {}

SharedBytes::SharedBytes(const std::shared_ptr<const SealedMemoryFile> &file)
    : view_(file->contents()), owner_(file), memoryFile_(file.get()) {}

std::expected<SharedBytes, OSStatus> SharedBytes::copyOf(std::span<const std::byte> bytes) try {
  if (bytes.empty()) {
    return SharedBytes();
  }
  if (bytes.size() > largestInlineSize) {
    auto file = SealedMemoryFile::create(bytes);
    if (!file) {
      return std::unexpected(file.error());
    }
    return SharedBytes(std::make_shared<const SealedMemoryFile>(*std::move(file)));
  }
  auto copy = std::make_shared<const std::vector<std::byte>>(bytes.begin(), bytes.end());
  const std::span<const std::byte> view = *copy;
  return SharedBytes(view, std::move(copy));
} catch (const std::bad_alloc &) {
  return std::unexpected(OSStatus{memFullErr});
}

}  // namespace platform
