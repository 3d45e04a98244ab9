// What the commands print for people and for scripts.
#pragma once

#include <StandIns/Mellel/Conversation/Conversation.h>

#include <span>
#include <string>
#include <string_view>

namespace mellel {

// Where the copy is, how much of it was formatted, and each citation that was not.
std::string formattingReport(std::string_view outputPath, const FormattedCitations &formatted,
                             const DocumentText &document, bool wantsBibliography);

// A line for each citation: its number, its text and the parts that are looked up.
std::string checkTable(std::span<const CheckedCitation> citations);

// An array with an object for each citation: "citation", and "records", an array of texts.
std::string checkJSON(std::span<const CheckedCitation> citations);

}  // namespace mellel
