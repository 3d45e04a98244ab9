// Changes to a sequence of bytes: some spans of it replaced by others, every other byte kept.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace mellel::rtf {

// Byte offsets, end exclusive.
struct Span {
  std::size_t begin = 0;
  std::size_t end = 0;

  bool operator==(const Span &) const = default;
};

struct Edit {
  Span span;  // may be empty: an insertion
  std::string replacement;
};

// The spans must lie in the bytes and must not overlap; their order does not matter. Edits at
// the same place are made in the order given.
std::string edited(std::string_view bytes, std::vector<Edit> edits);

}  // namespace mellel::rtf
