// Formats documents as attributed texts, and remembers the last few.
//
// An author scans a document again and again, mostly without a change between two scans, takes a
// change back, or compares two styles. So what is asked is compared with what was asked before,
// before a reference is read from its library or a text is made; the same text keeps what it was
// converted to.
#pragma once

#import "AskedDocument.h"
#import "CitedDocument.h"

#include <StandIns/Korvo/Engine/CitationProcessor.h>

#include <expected>
#include <list>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace platform {
class RunLoopTimer;
}

namespace korvo::adapter {

struct DocumentTexts {
  std::vector<Owned<NSAttributedString *>> groups;
  Owned<NSAttributedString *> bibliography;
};

class DocumentFormatter {
 public:
  DocumentFormatter();
  ~DocumentFormatter();
  DocumentFormatter(const DocumentFormatter &) = delete;
  DocumentFormatter &operator=(const DocumentFormatter &) = delete;

  engine::CitationProcessor &processor() { return processor_; }

  // The n-th text belongs to the n-th group; a group that lacks a reference is shown as its author
  // wrote it. Valid until the next call. An error is one line for the user.
  std::expected<const DocumentTexts *, std::string> format(const engine::Style &style,
                                                           std::span<KOCitation *const> citations,
                                                           std::span<const CitedGroup> groups);

 private:
  struct Answered {
    // Nothing where it cannot be told apart from what will be asked.
    std::optional<AskedDocument> asked;
    DocumentTexts texts;
  };

  const DocumentTexts *find(const DocumentRequest &request);
  void forgetSome();

  engine::CitationProcessor processor_;
  std::unique_ptr<platform::RunLoopTimer> rest_;
  // What was asked last comes first.
  std::list<Answered> answered_;
};

}  // namespace korvo::adapter
