#include "RememberedDocuments.h"

#include <algorithm>
#include <utility>

namespace korvo::engine {

RememberedDocuments::RememberedDocuments(std::size_t capacity) : capacity_(capacity) {}

std::shared_ptr<const FormattedDocument> RememberedDocuments::find(const std::string &question) {
  const auto found = std::ranges::find(documents_, question, &Document::question);
  if (found == documents_.end()) {
    return nullptr;
  }
  documents_.splice(documents_.begin(), documents_, found);
  return documents_.front().answer;
}

void RememberedDocuments::remember(std::string question,
                                   std::shared_ptr<const FormattedDocument> answer) {
  size_ += question.size();
  documents_.push_front({std::move(question), std::move(answer)});
  while (size_ > capacity_ && documents_.size() > 1) {
    size_ -= documents_.back().question.size();
    documents_.pop_back();
  }
}

}  // namespace korvo::engine
