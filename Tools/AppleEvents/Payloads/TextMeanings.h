// What the texts inside a payload say, in words.
#pragma once

#include <string>
#include <string_view>

namespace appleevents {

// A citation group as the host reads it: `search text "Smith 2001", tag "SMI", pages "45"`, the
// parts of a group with "; " between them. UTF-8.
std::string meaningOfCitation(std::string_view group);

// The text that pidgin RTF shows: its escapes are read, its attributes left out. Well-formed UTF-8.
std::string textOfPidgin(std::string_view pidgin);

// What is against the rules of pidgin RTF; empty where nothing is.
std::string faultOfPidgin(std::string_view pidgin);

}  // namespace appleevents
