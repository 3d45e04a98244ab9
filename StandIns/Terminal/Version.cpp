#include "Version.h"

namespace terminal {

TerminalText versionLine(Words program) { return program + TerminalText(Words(" " VERSION "\n")); }

}  // namespace terminal
