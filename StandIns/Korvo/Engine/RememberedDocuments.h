// The last few documents that were formatted, each with everything that it was made from.
//
// An author scans a document again and again, mostly without a change between two scans; then
// the answer is the one of the last time. Questions are compared in full, byte by byte: an
// answer is given only where the engine would have been asked the very same thing.
#pragma once

#include "FormattedText.h"

#include <cstddef>
#include <list>
#include <memory>
#include <string>

namespace korvo::engine {

class RememberedDocuments {
 public:
  // The memory that the questions may take, in bytes; the answers take a few times as much. At
  // least one document is kept, however large.
  explicit RememberedDocuments(std::size_t capacity = std::size_t{16} << 20);

  // nullptr when that was not asked, or too long ago. The same question finds the same object.
  std::shared_ptr<const FormattedDocument> find(const std::string &question);
  void remember(std::string question, std::shared_ptr<const FormattedDocument> answer);

 private:
  struct Document {
    std::string question;
    std::shared_ptr<const FormattedDocument> answer;
  };

  std::size_t capacity_;
  std::size_t size_ = 0;
  std::list<Document> documents_;  // the one asked for last comes first
};

}  // namespace korvo::engine
