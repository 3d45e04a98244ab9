#import "ConvertedTexts.h"

#import "AttributedCitations.h"

#include <functional>
#include <string_view>
#include <utility>

namespace korvo::adapter {
namespace {

Owned<KOConvertedText *> formattedText(NSAttributedString *text) {
  return Owned<KOConvertedText *>::taking([[KOConvertedText alloc] initWithAttributedString:text]);
}

}  // namespace

std::size_t ConvertedTexts::Hash::operator()(const engine::FormattedText *text) const {
  // Texts with other looks are few among those with the same characters.
  std::size_t hash = text->runs.size();
  for (const engine::Run &run : text->runs) {
    hash = hash * 31 + std::hash<std::u16string_view>()(run.text);
  }
  return hash;
}

bool ConvertedTexts::Equal::operator()(const engine::FormattedText *one,
                                       const engine::FormattedText *other) const {
  return *one == *other;
}

ConvertedTexts::Document ConvertedTexts::of(
    std::shared_ptr<const engine::FormattedDocument> formatted) {
  Document document;
  document.groups.reserve(formatted->groups.size());
  Texts texts;
  for (const engine::FormattedText &group : formatted->groups) {
    const auto [place, isNew] = texts.try_emplace(&group);
    if (isNew) {
      const auto known = texts_.find(&group);
      place->second = known != texts_.end() ? known->second : formattedText(attributedText(group));
    }
    document.groups.push_back(place->second);
  }
  if (formatted_ == nullptr || formatted_->bibliography != formatted->bibliography) {
    bibliography_ = formattedText(attributedBibliography(formatted->bibliography));
  }
  document.bibliography = bibliography_;
  texts_ = std::move(texts);
  formatted_ = std::move(formatted);
  return document;
}

}  // namespace korvo::adapter
