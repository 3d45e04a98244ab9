// Formats documents as attributed texts, and remembers the last one.
//
// An author scans a document again and again, mostly without a change between two scans. The engine
// has the answer then; but only to ask it, every reference has to be read from its library, and
// what it answers has to be made into attributed texts and those into RTF. So what is asked is
// compared with what was asked last, before anything is read or made.
#pragma once

#import "AskedDocument.h"
#import "CitedDocument.h"
#import "ConvertedTexts.h"

#include <StandIns/Korvo/Engine/CitationProcessor.h>

#include <expected>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace korvo::adapter {

struct DocumentTexts {
  std::vector<Owned<NSAttributedString *>> groups;
  Owned<NSAttributedString *> bibliography;
};

class DocumentFormatter {
 public:
  engine::CitationProcessor &processor() { return processor_; }

  // The n-th text belongs to the n-th group; a group that lacks a reference is shown as its author
  // wrote it. Valid until the next call. An error is one line for the user.
  std::expected<const DocumentTexts *, std::string> format(const engine::Style &style,
                                                           std::span<KOCitation *const> citations,
                                                           std::span<const CitedGroup> groups);

 private:
  DocumentTexts textsOf(const CitedDocument &document,
                        std::shared_ptr<const engine::FormattedDocument> formatted);

  engine::CitationProcessor processor_;
  ConvertedTexts convertedTexts_;
  // What was asked last, where it could be told apart from what will be asked, and the answer.
  std::optional<AskedDocument> asked_;
  DocumentTexts answer_;
};

}  // namespace korvo::adapter
