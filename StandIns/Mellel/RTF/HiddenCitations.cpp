#include "HiddenCitations.h"

namespace mellel::rtf {

// The number of a list's item may stand in braces too, {1}: a citation has a blank or an
// identifier in it.
void HiddenCitations::take(std::string_view text) {
  for (const char byte : text) {
    if (byte == '{') {
      state_ = State::open;
    } else if (byte == '}') {
      citations_ += state_ == State::openWithBlank ? 1 : 0;
      state_ = State::outside;
    } else if (state_ == State::open && (byte == ' ' || byte == '#')) {
      state_ = State::openWithBlank;
    }
  }
}

}  // namespace mellel::rtf
