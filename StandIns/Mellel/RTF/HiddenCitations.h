// Counts the citations in text that is no text of the document, so that somebody can be told.
#pragma once

#include <cstddef>
#include <string_view>

namespace mellel::rtf {

class HiddenCitations {
 public:
  // A text begins; nothing is open in it.
  void begin() { state_ = State::outside; }
  void take(std::string_view text);

  std::size_t citations() const { return citations_; }

 private:
  enum class State { outside, open, openWithBlank };

  State state_ = State::outside;
  std::size_t citations_ = 0;
};

}  // namespace mellel::rtf
