// Reads the plain text out of pidgin RTF.
//
// This is a lenient extractor, no RTF parser: it keeps the literal text, makes an apostrophe
// of "\rquote" and a backslash of an escaped one, and drops line feeds, braces and every
// other control word. It does not undo the writer's escapes: "\'7b " and "\uc0\u233 " are
// control words as well.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace formats {

// Called with the rest of the input when a character that was taken for a control character
// has no meaning. Such a character is dropped.
using UnknownControlCharacterHandler = std::function<void(std::u16string_view rest)>;

// Takes any input. The result is never longer than the input.
std::u16string textOfPidginRTF(std::u16string_view rtf,
                               const UnknownControlCharacterHandler &onUnknown = {});

}  // namespace formats
