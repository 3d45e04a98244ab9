// The requests about all citations of a document, sent to the host, and its checked answers.
//
// Each conversation has a number of its own, so that a late answer to an earlier one is noticed.
#pragma once

#include "Answers.h"
#include "Host.h"

#include <Formats/ScanRequest.h>
#include <StandIns/Mellel/Console/Failure.h>
#include <StandIns/Mellel/RTF/CitationFinder.h>

#include <expected>
#include <span>
#include <string>
#include <vector>

namespace mellel::conversation {

// As the document's citations travel: the text between the braces and, for a receiver that
// passes over what begins with "verified", the text without such markers. Views into the
// citations.
std::vector<formats::CitationPair> citationPairs(std::span<const rtf::Citation> citations);

// Preliminary scan.
std::expected<std::vector<CheckedCitation>, console::Failure> checkCitations(
    Host &host, std::span<const rtf::Citation> citations);

// Whether each of them finds its references, as a live bibliography in the host's default style
// tells. The host shows its user what finds none.
std::expected<std::vector<bool>, console::Failure> findCitations(
    Host &host, std::span<const rtf::Citation> citations);

struct WantedFormatting {
  std::string style;  // UTF-8; empty: the host asks, or takes its default
  bool bibliography = true;
};

// Preliminary scan, then final scan, as a word processor does.
std::expected<FormattedCitations, console::Failure> formatByScan(
    Host &host, std::span<const rtf::Citation> citations, const WantedFormatting &wanted);

// One live bibliography request.
std::expected<FormattedCitations, console::Failure> formatLive(
    Host &host, std::span<const rtf::Citation> citations, const WantedFormatting &wanted);

}  // namespace mellel::conversation
