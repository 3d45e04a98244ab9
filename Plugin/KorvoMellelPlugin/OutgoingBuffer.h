// An outgoing payload: allocated once, in the size that was computed, and freed with its owner.
#pragma once

#include <Formats/PayloadWriter.h>

#include <cstddef>
#include <cstdlib>
#include <memory>

class OutgoingBuffer {
 public:
  // Takes bytes that std::malloc or std::calloc made; null for an allocation that failed.
  OutgoingBuffer(void *bytes, std::size_t size) : bytes_(static_cast<char *>(bytes)), size_(size) {}

  explicit operator bool() const { return bytes_ != nullptr; }
  const char *bytes() const { return bytes_.get(); }
  std::size_t size() const { return size_; }
  formats::PayloadWriter writer() { return formats::PayloadWriter({bytes_.get(), size_}); }

 private:
  struct Free {
    void operator()(char *bytes) const { std::free(bytes); }
  };
  std::unique_ptr<char, Free> bytes_;
  std::size_t size_;
};
