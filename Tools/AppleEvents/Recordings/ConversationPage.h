// A conversation as a page for a browser.
#pragma once

#include "Recording.h"

#include <StandIns/Terminal/TerminalText.h>

namespace appleevents {

// One file of HTML that needs no other and runs no script: the processes side by side, an arrow for
// each message, and behind each its fields, to be opened. Light or dark, as the reader has it.
terminal::TerminalText conversationPage(const Recording &recording);

}  // namespace appleevents
