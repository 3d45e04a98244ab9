// The requests about a whole document, sent to the host, and its checked answers.
#pragma once

#include "Options.h"

#include <StandIns/Mellel/Conversation/Conversation.h>
#include <StandIns/Mellel/Conversation/Failure.h>
#include <StandIns/Mellel/Conversation/Host.h>
#include <StandIns/Mellel/Documents/Documents.h>

#include <expected>
#include <vector>

namespace mellel {

// Preliminary scan.
std::expected<std::vector<CheckedCitation>, Failure> checkCitations(Host &host,
                                                                    const Document &document,
                                                                    std::uint32_t documentID);

// Preliminary scan, then final scan, as a word processor does; or one live bibliography request.
std::expected<FormattedCitations, Failure> formatCitations(Host &host, const Document &document,
                                                           const FormatOptions &options);

}  // namespace mellel
