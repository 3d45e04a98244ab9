// The text of a document as it is compared and sent: without what only guides the layout.
#pragma once

#include <string>
#include <string_view>

namespace mellel::rtf {

// Appends UTF-8 text: tabs, line breaks and no-break spaces become blanks, no-break hyphens
// hyphens; optional hyphens, zero-width marks that carry no meaning and control characters
// become nothing.
void appendPlainText(std::string &plain, std::string_view text);

// Whether there is nothing but blanks, as appendPlainText understands them.
bool isBlankText(std::string_view text);

// Whether the text between two braces is the word that stands for the bibliography: in capital
// or small letters, blanks around it ignored.
bool isBibliographyWord(std::string_view text);

}  // namespace mellel::rtf
