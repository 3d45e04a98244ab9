#include "Failure.h"

#include <StandIns/Terminal/Output.h>

namespace mellel::console {

void complain(const Failure &failure) {
  terminal::printError("mellel: " + terminal::TerminalText::inOneLine(failure.line) + "\n");
}

}  // namespace mellel::console
