#include "FormattedText.h"

namespace korvo::engine {

std::u16string FormattedText::plainText() const {
  std::u16string text;
  for (const Run &run : runs) {
    text += run.text;
  }
  return text;
}

}  // namespace korvo::engine
