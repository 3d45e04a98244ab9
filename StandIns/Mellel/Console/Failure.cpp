#include "Failure.h"

#include <StandIns/Terminal/Output.h>

namespace mellel::console {

void complain(const Failure &failure) {
  terminal::printError("mellel: " + terminal::TerminalText::inOneLine(failure.line) + "\n");
}

void remark(std::string_view line) {
  terminal::printError("mellel: " + terminal::TerminalText::inOneLine(line) + "\n");
}

}  // namespace mellel::console
