// What the commands print for people and for scripts.
#pragma once

#include <StandIns/Mellel/Conversation/Answers.h>
#include <StandIns/Terminal/TerminalText.h>

#include <cstddef>
#include <span>
#include <string_view>
#include <vector>

namespace mellel::commands {

// A copy that was made, and of what. Views: nothing is owned.
struct FormattedCopy {
  std::string_view output;  // as it was given; empty for standard output
  std::string_view askedStyle;
  const conversation::FormattedCitations &formatted;
  const rtf::DocumentText &document;
  bool wantsBibliography = true;
  std::size_t footnotes = 0;
};

// Where the copy is, how much of it was formatted, and each citation that was not.
terminal::TerminalText formattingReport(const FormattedCopy &copy);

// An object: "wrote" (null for standard output), "style", "askedStyle" (null where none was named),
// "citations", an array of objects with "citation" and "formatted", "footnotes", and
// "bibliography", the number of its entries or null.
terminal::TerminalText formattingJSON(const FormattedCopy &copy);

// A line for each citation: its number, its text, whether it is found and the parts that are looked
// up. `found` has an entry for each.
terminal::TerminalText checkTable(std::span<const conversation::CheckedCitation> citations,
                                  const std::vector<bool> &found);

// An array with an object for each citation: "citation", "found", and "records", an array of texts.
terminal::TerminalText checkJSON(std::span<const conversation::CheckedCitation> citations,
                                 const std::vector<bool> &found);

}  // namespace mellel::commands
