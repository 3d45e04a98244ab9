#include "Edits.h"

#include <algorithm>

namespace mellel::rtf {

std::string edited(std::string_view bytes, std::vector<Edit> edits) {
  std::stable_sort(edits.begin(), edits.end(), [](const Edit &left, const Edit &right) {
    return left.span.begin < right.span.begin;
  });
  std::size_t size = bytes.size();
  for (const Edit &edit : edits) {
    size += edit.replacement.size() - (edit.span.end - edit.span.begin);
  }
  std::string result;
  result.reserve(size);
  std::size_t position = 0;
  for (const Edit &edit : edits) {
    result += bytes.substr(position, edit.span.begin - position);
    result += edit.replacement;
    position = edit.span.end;
  }
  result += bytes.substr(position);
  return result;
}

}  // namespace mellel::rtf
