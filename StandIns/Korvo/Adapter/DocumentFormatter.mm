#import "DocumentFormatter.h"

#import "AttributedCitations.h"
#import "KOConvertedText.h"

#include <Platform/RunLoopTimer.h>
#include <StandIns/Korvo/Engine/TextFile.h>

#include <algorithm>
#include <chrono>
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

DocumentTexts textsOf(const CitedDocument &document, const engine::FormattedDocument &formatted) {
  // The same text is the same object.
  std::vector<Owned<NSAttributedString *>> made;
  made.reserve(formatted.texts.size());
  for (const engine::FormattedText &text : formatted.texts) {
    made.push_back(convertedText(attributedText(text)));
  }
  DocumentTexts texts;
  texts.bibliography = convertedText(attributedBibliography(formatted.bibliography));
  texts.groups.reserve(document.groups.size());
  auto answer = formatted.groups.begin();
  for (const CitedDocument::Group &group : document.groups) {
    texts.groups.push_back(group.isAsked ? made[*answer++] : group.written);
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
  engine::CiteGroup cites;
  const auto groupAt = [&](std::size_t group) -> const engine::CiteGroup & {
    const auto [first, count] = document.asked[group];
    readCites(citations.subspan(first, count), document, cites);
    return cites;
  };
  rest_->callAfter(timeToRest);
  const auto formatted =
      processor_.formatDocument(style, *styleText, lookUp, document.asked.size(), groupAt, true);
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
