#import "DocumentFormatter.h"

#import "AttributedCitations.h"
#import "KOConvertedText.h"

#include <Platform/RunLoopTimer.h>
#include <StandIns/Korvo/Engine/TextFile.h>

#include <algorithm>
#include <chrono>
#include <functional>
#include <map>
#include <string_view>
#include <utility>

namespace korvo::adapter {
namespace {

// How many answers are remembered, and how many citations they have together; the last one is,
// however large.
constexpr std::size_t documentCapacity = 4;
constexpr std::size_t groupCapacity = 50'000;

// Who has asked nothing for so long has no answer to wait for.
constexpr std::chrono::seconds timeToRest{2};

Owned<NSAttributedString *> convertedText(NSAttributedString *text) {
  return Owned<NSAttributedString *>::taking(
      [[KOConvertedText alloc] initWithAttributedString:text]);
}

// The same text is the same object.
class Texts {
 public:
  Owned<NSAttributedString *> of(const engine::FormattedText &text) {
    const auto [place, isNew] = made_.try_emplace(text);
    if (isNew) {
      place->second = convertedText(attributedText(text));
    }
    return place->second;
  }

 private:
  std::map<std::reference_wrapper<const engine::FormattedText>, Owned<NSAttributedString *>,
           std::less<engine::FormattedText>>
      made_;
};

DocumentTexts textsOf(const CitedDocument &document, const engine::FormattedDocument &formatted) {
  Texts made;
  DocumentTexts texts;
  texts.bibliography = convertedText(attributedBibliography(formatted.bibliography));
  texts.groups.reserve(document.groups.size());
  for (const CitedDocument::Group &group : document.groups) {
    texts.groups.push_back(group.written.get() != nil ? group.written
                                                      : made.of(formatted.groups[group.asked]));
  }
  return texts;
}

}  // namespace

DocumentFormatter::DocumentFormatter()
    : rest_(std::make_unique<platform::RunLoopTimer>([this] { processor_.giveBackMemory(); })) {}

DocumentFormatter::~DocumentFormatter() = default;

std::expected<const DocumentTexts *, std::string> DocumentFormatter::format(
    const engine::Style &style, std::span<KOCitation *const> citations,
    std::span<const CitedGroup> groups) {
  const auto styleText = engine::readFile(style.file);
  if (!styleText) {
    return std::unexpected(styleText.error());
  }
  const DocumentRequest request{style, *styleText, citations, groups};
  if (const DocumentTexts *known = find(request)) {
    return known;
  }

  const CitedDocument document = readDocument(citations, groups);
  const auto lookUp = [&](std::string_view item) -> std::optional<std::string> {
    const auto found = document.items.find(std::string(item));
    if (found == document.items.end()) {
      return std::nullopt;
    }
    return found->second;
  };
  rest_->callAfter(timeToRest);
  const auto formatted = processor_.formatDocument(style, *styleText, lookUp, document.asked, true);
  if (!formatted) {
    return std::unexpected(formatted.error());
  }
  answered_.push_front({.asked = AskedDocument::of(request, document.versions),
                        .texts = textsOf(document, *formatted)});
  forgetSome();
  return &answered_.front().texts;
}

const DocumentTexts *DocumentFormatter::find(const DocumentRequest &request) {
  // What is out of date is never asked again.
  std::erase_if(answered_, [](const Answered &answered) {
    return !answered.asked || !answered.asked->isUpToDate();
  });
  const auto known = std::ranges::find_if(
      answered_, [&](const Answered &answered) { return answered.asked->isAskedAgainBy(request); });
  if (known == answered_.end()) {
    return nullptr;
  }
  answered_.splice(answered_.begin(), answered_, known);
  return &answered_.front().texts;
}

void DocumentFormatter::forgetSome() {
  std::size_t documents = 0;
  std::size_t groups = 0;
  std::erase_if(answered_, [&](const Answered &answered) {
    documents += 1;
    groups += answered.texts.groups.size();
    return documents > 1 && (documents > documentCapacity || groups > groupCapacity);
  });
}

}  // namespace korvo::adapter
