// Reads the texts that the citation script prints: control characters in the text say
// where a change of looks begins and ends (Citations/markers.js writes them; the table in
// MarkedText.cpp is the other half). Anything is readable: what does not match is ignored.
#pragma once

#include "FormattedText.h"

#include <optional>
#include <string_view>

namespace korvo::engine {

// A part that the style sets apart in front ("1." in a numbered list), and the rest.
struct MarkedText {
  std::optional<FormattedText> firstField;
  FormattedText text;
};

MarkedText readMarkedText(std::u16string_view marked);

}  // namespace korvo::engine
