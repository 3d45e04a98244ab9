// A conversation in lines for people.
#pragma once

#include "Conversation.h"

#include <StandIns/Terminal/TerminalText.h>

#include <string>

namespace appleevents {

// A line a message: when, who, which event, bytes, how long after its request, what it came to.
terminal::TerminalText conversationText(const Recording &recording);

// Parts of such a line.
std::string processName(formats::FourCharacterCode signature);
std::string timeInWords(std::chrono::microseconds time);
std::string nameOf(const Turn &turn);
std::string meaningOf(const Turn &turn);
std::size_t sizeOf(const Turn &turn);

}  // namespace appleevents
