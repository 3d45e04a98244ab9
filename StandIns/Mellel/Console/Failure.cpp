#include "Failure.h"

#include <Formats/OneLine.h>

#include <iostream>

namespace mellel::console {

void complain(const Failure &failure) {
  std::cerr << "mellel: " << formats::inOneLine(failure.line) << std::endl;
}

}  // namespace mellel::console
