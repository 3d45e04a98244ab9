#include "VerifiedMarker.h"

namespace formats {

namespace {

template <typename Unit>
std::basic_string_view<Unit> withoutMarkers(std::basic_string_view<Unit> text,
                                            std::basic_string_view<Unit> marker) {
  while (text.starts_with(marker)) {
    text.remove_prefix(marker.size());
  }
  return text;
}

}  // namespace

std::u16string_view withoutVerifiedMarkers(std::u16string_view text) {
  return withoutMarkers<char16_t>(text, u"verified ");
}

std::string_view withoutVerifiedMarkers(std::string_view text) {
  return withoutMarkers<char>(text, "verified ");
}

}  // namespace formats
