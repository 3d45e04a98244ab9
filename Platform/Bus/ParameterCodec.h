// Parameters in a message of the bus: an array of keyword, type and data, where the data are bytes
// in the message or a sealed memory file beside it.
//
// Two walls stand behind the choice between the two. The bus caps an array at 64 MiB and, as its
// daemon is usually configured, a message at 16 files; it does not refuse what exceeds either but
// cuts the sender off. Data above `largestInlineSize` is always a file; smaller data is one, too,
// once so much is in the message already that the first wall comes near. What would then hit the
// second wall is not sent.
#pragma once

#include "BusHandles.h"

#include <Platform/AppleEventMessage.h>

#include <cstddef>
#include <cstdint>
#include <expected>

namespace platform {

inline constexpr char parametersSignature[] = "a(uuv)";

// Appends the parameters. memFullErr when they do not fit into one message.
std::expected<void, OSStatus> appendParameters(sd_bus_message *message,
                                               const Parameters &parameters);

// Reads an unsigned 32-bit number from where the message's reader stands. False when there is
// none.
bool readNumber(sd_bus_message *message, std::uint32_t &number);

// Reads the parameters from where the message's reader stands. Their bytes stay in the message or
// the file and keep it alive. errAEWrongDataType for data that is neither bytes nor a file;
// errAECorruptData for a file that is not sealed or a message that is damaged; memFullErr for a
// file of more than `largestFileSize` bytes.
std::expected<Parameters, OSStatus> readParameters(const Message &message,
                                                   std::size_t largestFileSize);

}  // namespace platform
