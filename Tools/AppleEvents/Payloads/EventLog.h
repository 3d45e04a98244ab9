// Events as macOS writes them down for people.
#pragma once

#include "EventInput.h"

#include <expected>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace appleevents {

// Whether it is what a program prints with AEDebugSends or AEDebugReceives in its environment.
bool looksLikeEventLog(std::string_view text);

// The events of such a log. It shows the direct object as hexadecimal or as text in quotation
// marks, which cannot show a NUL: an event says when the log has fewer bytes than it announces.
std::expected<std::vector<EventInput>, std::string> readEventLog(std::string_view log);

// «data TEXT0007…», or 'TEXT'($0007…$) and the event around it, as AppleScript and AEPrintDesc
// write it. Nothing when it is neither.
std::optional<EventInput> readScriptData(std::string_view text);

}  // namespace appleevents
