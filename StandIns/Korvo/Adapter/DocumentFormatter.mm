#import "DocumentFormatter.h"

#include <StandIns/Korvo/Engine/TextFile.h>

#include <string_view>
#include <utility>

namespace korvo::adapter {

std::expected<const DocumentTexts *, std::string> DocumentFormatter::format(
    const engine::Style &style, std::span<KOCitation *const> citations,
    std::span<const CitedGroup> groups) {
  const auto styleText = engine::readFile(style.file);
  if (!styleText) {
    return std::unexpected(styleText.error());
  }
  const DocumentRequest request{style, *styleText, citations, groups};
  if (asked_ && asked_->isAskedAgainBy(request)) {
    return &answer_;
  }

  asked_.reset();
  const CitedDocument document = readDocument(citations, groups);
  const auto lookUp = [&](std::string_view item) -> std::optional<std::string> {
    const auto found = document.items.find(std::string(item));
    if (found == document.items.end()) {
      return std::nullopt;
    }
    return found->second;
  };
  auto formatted = processor_.sharedDocument(style, *styleText, lookUp, document.asked, true);
  if (!formatted) {
    return std::unexpected(std::move(formatted.error()));
  }
  answer_ = textsOf(document, *std::move(formatted));
  asked_ = AskedDocument::of(request, document.versions);
  return &answer_;
}

DocumentTexts DocumentFormatter::textsOf(
    const CitedDocument &document, std::shared_ptr<const engine::FormattedDocument> formatted) {
  const ConvertedTexts::Document made = convertedTexts_.of(std::move(formatted));
  DocumentTexts texts;
  texts.bibliography = Owned<NSAttributedString *>::retaining(made.bibliography.get());
  texts.groups.reserve(document.groups.size());
  for (const CitedDocument::Group &group : document.groups) {
    texts.groups.push_back(group.written.get() != nil ? group.written
                                                      : Owned<NSAttributedString *>::retaining(
                                                            made.groups[group.asked].get()));
  }
  return texts;
}

}  // namespace korvo::adapter
