// The "verified " marker that a citation group string from the word processor may begin
// with, any number of times. It is no part of the citation.
#pragma once

#include <string_view>

namespace formats {

// What follows the leading markers ("verified", exactly one blank, lower case). A view
// into the argument.
std::u16string_view withoutVerifiedMarkers(std::u16string_view text);
// The same on UTF-8: the marker is ASCII.
std::string_view withoutVerifiedMarkers(std::string_view text);

}  // namespace formats
