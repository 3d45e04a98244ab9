#include "Failure.h"

#include <Formats/OneLine.h>

#include <iostream>

namespace wordprocessor {

void complain(const Failure &failure) {
  std::cerr << "mellel: " << formats::inOneLine(failure.line) << std::endl;
}

}  // namespace wordprocessor
