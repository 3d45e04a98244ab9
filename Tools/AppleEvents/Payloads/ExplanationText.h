// An explanation for people and for scripts.
#pragma once

#include "Explanation.h"

#include <StandIns/Terminal/TerminalText.h>

namespace appleevents {

// A headline, a line a field (offset, bytes, name, value), a line a finding. Long values are
// shortened.
terminal::TerminalText explanationText(const Explanation &explanation);

// One object, on one line; nothing is shortened. Bytes and what is no UTF-8 are hexadecimal.
terminal::TerminalText explanationJSON(const Explanation &explanation);

// "'mLeL' 'SCNQ', final scan, from the word processor"
terminal::TerminalText headline(const EventKind &kind);

// What a field holds, shortened, for a line.
std::string valueInWords(const Field &field);

}  // namespace appleevents
