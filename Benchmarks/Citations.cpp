#include "Citations.h"

#include <iterator>

namespace benchmarks {

std::string citationAt(std::size_t index) {
  static const char *const names[] = {"Smith",  "Jones and Brown", "Garcia", "Lee et al.",
                                      "Martin", "Wilson",          "Nguyen", "Chen",
                                      "Rossi",  "Müller"};
  const std::size_t place = index % differentCitations;
  const std::string name = names[place % std::size(names)];
  const std::string year = std::to_string(1950 + place % 75);
  std::string text = name + " " + year + "#" + name.substr(0, 3) + year + std::to_string(place);
  if (place % 5 == 1) {
    text += "@" + std::to_string(place) + "–" + std::to_string(place + 7);
  }
  if (place % 20 == 2) {
    text = "\\see \\" + text;
  }
  if (place % 20 == 3) {
    text = "%" + text;
  }
  return text;
}

}  // namespace benchmarks
