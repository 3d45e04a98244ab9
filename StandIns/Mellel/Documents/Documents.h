// Documents on their way through a command: read, formatted with an answer, written.
#pragma once

#include <StandIns/Mellel/Conversation/Conversation.h>
#include <StandIns/Mellel/Conversation/Failure.h>
#include <StandIns/Mellel/RTF/CitationFinder.h>

#include <expected>
#include <string>

namespace mellel {

struct Document {
  std::string path;
  std::string rtf;
  DocumentText text;
};

std::expected<Document, Failure> openDocument(const std::string &path);

// Another number for each conversation, so that a late answer to an earlier one is noticed.
std::uint32_t makeDocumentID();

std::string formattedCopy(const Document &document, const FormattedCitations &formatted);

}  // namespace mellel
