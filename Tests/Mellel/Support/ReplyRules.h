// What may become of a document for an answer of any bytes.
//
// The rules are spelt out here a second time, slowly and apart from the word processor: which
// payload is whole, for which document it is, and what the copy must show that is made from it.
#pragma once

#include "SlowRTF.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace mellel_test {

// Whether the answer says that it is for a document other than this one.
bool isForAnother(const std::string &payload, std::uint32_t documentID);

// A document of plain text, in which every citation and the bibliography's place are in braces.
struct Draft {
  std::string rtf;
  std::vector<std::string> citations;
  // What its citations and the bibliography's place leave over, in order.
  std::vector<std::string> pieces;
};

// Whatever a formatted copy shows, and what is said of it.
struct FormattedCopy {
  SlowText text;
  // Without the line that names the file.
  std::string report;
};

// Nothing when the answer is to be refused.
std::optional<FormattedCopy> copyFromScanReply(const Draft &draft, std::uint32_t documentID,
                                               const std::string &payload);

// Nothing when the answer is to be refused; else each citation with its records.
struct LookedUp {
  std::string citation;
  std::vector<std::string> records;
};
std::optional<std::vector<LookedUp>> lookedUpIn(std::size_t citationCount, std::uint32_t documentID,
                                                const std::string &payload);

// The text of the citation to insert; nothing when the answer is to be refused.
std::optional<std::string> citationIn(const std::string &payload);

// As it can stand in a line: without control characters.
std::string withoutControls(const std::string &text);
// As a string of JSON, in quotation marks; what may not be shown at a terminal is escaped.
std::string inJSON(const std::string &text);

// The draft, as it shows, with this text after that one.
SlowText withInsertion(const Draft &draft, const std::string &after, const std::string &text);

// What the two show is the same. What is no part of it (the format of a paragraph's end, the
// indents of a character) may differ.
bool showTheSame(const SlowText &left, const SlowText &right);

}  // namespace mellel_test
