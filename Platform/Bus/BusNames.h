// The names under which Apple Events appear on the message bus, and statuses as bus errors.
#pragma once

#include <ApplicationServices/MacTypes.h>

#include <optional>
#include <string>
#include <string_view>

namespace platform {

inline constexpr char objectPath[] = "/org/korvo/AppleEvents";
inline constexpr char interfaceName[] = "org.korvo.AppleEvents1";

// The bus name that the process with this signature owns.
std::string busName(FourCharCode signature);

// The signature in a bus name; nothing when it is no name of this kind, to the letter.
std::optional<FourCharCode> signatureInBusName(std::string_view name);

// The name of the bus error that stands for a status below 0.
std::string errorName(OSStatus status);

// The status that a bus error from another process, or from the bus about it, stands for.
OSStatus statusOfError(std::string_view errorName);

// A status in words, for the error's message.
const char *inWords(OSStatus status);

}  // namespace platform
