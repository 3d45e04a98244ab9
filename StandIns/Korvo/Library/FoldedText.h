// Text made comparable: what readers take for the same text folds to the same bytes.
#pragma once

#include <string>
#include <string_view>

namespace korvo::library {

// Ignores the case of letters, diacritics (also strokes and ligatures: "Ørsted" folds like
// "orsted"), typographic variants of quotation marks and dashes, and every blank but one
// between words. UTF-8 in and out; invalid bytes become U+FFFD.
std::string foldedText(std::string_view text);

}  // namespace korvo::library
