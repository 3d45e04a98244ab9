// What the commands print for people and for scripts.
#pragma once

#include <StandIns/Mellel/Conversation/Answers.h>
#include <StandIns/Terminal/TerminalText.h>

#include <span>
#include <string_view>

namespace mellel::commands {

// Where the copy is, how much of it was formatted, and each citation that was not.
terminal::TerminalText formattingReport(std::string_view outputPath,
                                        const conversation::FormattedCitations &formatted,
                                        const rtf::DocumentText &document, bool wantsBibliography);

// A line for each citation: its number, its text and the parts that are looked up.
terminal::TerminalText checkTable(std::span<const conversation::CheckedCitation> citations);

// An array with an object for each citation: "citation", and "records", an array of texts.
terminal::TerminalText checkJSON(std::span<const conversation::CheckedCitation> citations);

}  // namespace mellel::commands
