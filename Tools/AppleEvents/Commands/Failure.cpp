#include "Failure.h"

#include <StandIns/Terminal/Output.h>

namespace appleevents {

void complain(std::string_view line) {
  terminal::printError("appleevents: " + terminal::TerminalText::inOneLine(line) + "\n");
}

}  // namespace appleevents
