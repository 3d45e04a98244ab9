#include "FourCharacters.h"

namespace platform {

std::string inQuotes(FourCharCode code) {
  std::string text = "'";
  for (int shift = 24; shift >= 0; shift -= 8) {
    const char character = static_cast<char>(code >> shift & 0xFF);
    text += character >= ' ' && character <= '~' ? character : '?';
  }
  return text + "'";
}

}  // namespace platform
