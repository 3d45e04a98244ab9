#include "CitationFinder.h"

#include "PlainText.h"
#include "TextReader.h"

#include <algorithm>
#include <map>
#include <tuple>
#include <utility>

namespace mellel::rtf {

namespace {

// Longer than any citation: what is open for so long is no citation, and is not remembered.
constexpr std::size_t greatestCitationLength = 65'536;
constexpr std::size_t greatestNumberOfSpans = 16'384;

struct FoundCitation {
  Citation citation;
  bool isBibliographyPlace = false;
  std::optional<CharacterSpan> paragraphEnd = std::nullopt;
};

// One text of the document: the main text, or one that interrupts it.
struct Story {
  std::optional<Citation> open;
  // Characters other than blanks in the paragraph so far, apart from the open citation.
  bool paragraphHasText = false;
  std::vector<CharacterSpan> blanks;
  // The found citation that may turn out to be alone in this paragraph.
  std::optional<std::size_t> candidate;
  CharacterLooks firstLooks;
  CharacterLooks commonLooks;  // of the open citation so far
  // The blank that the text before ends with.
  std::optional<CharacterSpan> lastBlank;
  // The found citation that nothing has followed yet.
  std::optional<std::size_t> lastCitation;
};

void appendSpan(std::vector<CharacterSpan> &spans, const TextEvent &event) {
  if (event.begin == event.end) {
    return;
  }
  if (!spans.empty() && spans.back().span.end == event.begin) {
    spans.back().span.end = event.end;
    return;
  }
  spans.push_back({{event.begin, event.end}, event.separator});
}

// The blank at the end of a piece of text, where it has one of its own.
void noteBlankAtEnd(const TextEvent &event, std::optional<CharacterSpan> &blank) {
  if (event.character == ' ' || event.character == 0x00A0) {
    blank = {{event.begin, event.end}, event.separator};
    return;
  }
  const bool isLiteral = event.text.size() == event.end - event.begin;
  if (event.text.back() == ' ' && isLiteral) {
    blank = {{event.end - 1, event.end}, {}};
    return;
  }
  blank.reset();
}

// The place behind the stops and commas that a piece of text begins with.
std::optional<std::size_t> endOfPunctuation(const TextEvent &event) {
  const std::size_t length = std::min(event.text.find_first_not_of(".,;:!?"), event.text.size());
  const bool isLiteral = event.text.size() == event.end - event.begin;
  return isLiteral && length > 0 ? std::optional(event.begin + length) : std::nullopt;
}

class CitationFinder {
 public:
  explicit CitationFinder(std::string_view rtf) : reader_(rtf) {}

  std::expected<DocumentText, std::string> find() {
    for (;;) {
      const TextEvent event = reader_.next();
      switch (event.kind) {
        case TextEventKind::text:
          takeText(event);
          break;
        case TextEventKind::paragraphEnd:
          endParagraph(event);
          break;
        case TextEventKind::storyBegin:
          closed_.reset();
          stories_.emplace_back();
          break;
        case TextEventKind::storyEnd:
          endParagraph(event);
          stories_.pop_back();
          break;
        case TextEventKind::documentEnd:
          endParagraph(event);
          return result();
        case TextEventKind::failure:
          return std::unexpected(reader_.error());
      }
    }
  }

 private:
  void takeText(const TextEvent &event) {
    Story &story = stories_.back();
    if (event.isContinuation && closed_) {
      appendSpan(found_[*closed_].citation.spans, event);
      return;
    }
    if (!event.isContinuation) {
      closed_.reset();
    }
    countBodyText(event);
    if (event.character == '{') {
      openCitation(event);
    } else if (event.character == '}') {
      closeCitation(event);
    } else if (story.open) {
      extendCitation(event);
    } else {
      noteSeamWith(event);
      if (!story.paragraphHasText) {
        takeTextAroundCitation(event);
      }
    }
  }

  void noteSeamWith(const TextEvent &event) {
    Story &story = stories_.back();
    if (event.text.empty()) {
      return;
    }
    noteBlankAtEnd(event, story.lastBlank);
    if (story.lastCitation) {
      Citation &citation = found_[*story.lastCitation].citation;
      citation.noteSeam.markBehindPunctuation = endOfPunctuation(event);
      citation.isBeforeStop = event.text.starts_with('.');
      // A blank between two citations keeps their marks apart.
      if (isBlankText(event.text)) {
        story.lastBlank.reset();
      }
      story.lastCitation.reset();
    }
  }

  void takeTextAroundCitation(const TextEvent &event) {
    Story &story = stories_.back();
    appendSpan(story.blanks, event);
    if (!isBlankText(event.text) || story.blanks.size() > greatestNumberOfSpans) {
      noteText();
    }
  }

  void noteText() {
    Story &story = stories_.back();
    if (story.paragraphHasText) {
      return;  // and so there is nothing else to forget
    }
    story.paragraphHasText = true;
    story.candidate.reset();
    story.blanks.clear();
  }

  void openCitation(const TextEvent &event) {
    Story &story = stories_.back();
    if (story.open || story.candidate) {
      noteText();
    }
    story.open.emplace();
    story.open->isInMainText = reader_.isInMainText();
    story.open->noteSeam.blankBefore = std::exchange(story.lastBlank, std::nullopt);
    story.lastCitation.reset();
    story.firstLooks = story.commonLooks = reader_.characterFormat().looks;
    appendSpan(story.open->spans, event);
  }

  void extendCitation(const TextEvent &event) {
    Story &story = stories_.back();
    if (!event.text.empty()) {
      noteLooks(story);
    }
    appendPlainText(story.open->text, event.text);
    appendSpan(story.open->spans, event);
    if (story.open->text.size() > greatestCitationLength ||
        story.open->spans.size() > greatestNumberOfSpans) {
      story.open.reset();
      noteText();
    }
  }

  void closeCitation(const TextEvent &event) {
    Story &story = stories_.back();
    if (!story.open || isBlankText(story.open->text)) {
      story.open.reset();
      noteText();
      return;
    }
    noteLooks(story);
    if (story.firstLooks != story.commonLooks) {
      story.open->endingLooks = looksWithout(story.firstLooks, story.commonLooks);
    }
    appendSpan(story.open->spans, event);
    const bool isAlone = !story.paragraphHasText && isBibliographyWord(story.open->text);
    closed_ = found_.size();
    if (isAlone) {
      story.candidate = closed_;
    } else {
      noteText();
    }
    story.lastCitation = closed_;
    found_.emplace_back(std::move(*story.open));
    story.open.reset();
  }

  void noteLooks(Story &story) const {
    const CharacterLooks &looks = reader_.characterFormat().looks;
    if (looks != story.commonLooks) {
      story.commonLooks = commonLooks(story.commonLooks, looks);
    }
  }

  void endParagraph(const TextEvent &event) {
    Story &story = stories_.back();
    closed_.reset();
    if (story.candidate) {
      FoundCitation &place = found_[*story.candidate];
      place.isBibliographyPlace = true;
      std::vector<CharacterSpan> &spans = place.citation.spans;
      spans.insert(spans.end(), story.blanks.begin(), story.blanks.end());
      if (event.kind == TextEventKind::paragraphEnd && event.character == '\n') {
        place.paragraphEnd = CharacterSpan{{event.begin, event.end}, event.separator};
      }
    }
    story = Story{};
  }

  void countBodyText(const TextEvent &event) {
    if (!reader_.isInMainText()) {
      return;
    }
    const CharacterFormat &characters = reader_.characterFormat();
    const auto format =
        std::tuple(reader_.paragraphFormat().style, characters.font, characters.size);
    if (lastFormat_ == nullptr || lastFormat_->first != format) {
      if (lengthOfFormat_.size() >= greatestNumberOfFormats) {
        return;
      }
      lastFormat_ = &*lengthOfFormat_.try_emplace(format, 0).first;
    }
    lastFormat_->second += event.end - event.begin;
  }

  std::expected<DocumentText, std::string> result() {
    DocumentText text;
    // A footnote's citations are complete before the one that the footnote interrupts: few
    // documents have such.
    const auto begin = [](const FoundCitation &found) {
      return found.citation.spans.front().span.begin;
    };
    if (!std::ranges::is_sorted(found_, {}, begin)) {
      std::ranges::stable_sort(found_, {}, begin);
    }
    text.citations.reserve(found_.size());
    for (FoundCitation &found : found_) {
      if (!found.isBibliographyPlace) {
        text.citations.push_back(std::move(found.citation));
      } else if (!text.bibliographyPlace) {
        text.bibliographyPlace = {std::move(found.citation.spans), found.paragraphEnd};
      }
    }
    text.endOfMainText = reader_.endOfMainText();
    text.lastParagraphIsOpen = reader_.lastParagraphIsOpen();
    text.citationsInListTexts = reader_.citationsInListTexts();
    const auto most = std::max_element(
        lengthOfFormat_.begin(), lengthOfFormat_.end(),
        [](const auto &left, const auto &right) { return left.second < right.second; });
    if (most != lengthOfFormat_.end()) {
      std::tie(text.bodyFormat.style, text.bodyFormat.font, text.bodyFormat.size) = most->first;
    }
    return text;
  }

  using Format = std::tuple<std::int32_t, std::int32_t, std::int32_t>;
  // More than any document really uses.
  static constexpr std::size_t greatestNumberOfFormats = 4096;

  TextReader reader_;
  std::vector<FoundCitation> found_;
  // The citation whose closing brace may still have a fallback.
  std::optional<std::size_t> closed_;
  std::vector<Story> stories_ = std::vector<Story>(1);
  std::map<Format, std::size_t> lengthOfFormat_;
  std::pair<const Format, std::size_t> *lastFormat_ = nullptr;
};

// A paragraph's text, and after which byte each piece of it ends.
struct SearchedParagraph {
  struct Piece {
    std::size_t textEnd;
    std::size_t documentEnd;
    // Whether each byte of text is one byte of the document.
    bool isLiteral;
  };
  std::string text;
  std::vector<Piece> pieces;

  void append(const TextEvent &event) {
    const std::size_t before = text.size();
    appendPlainText(text, event.text);
    const bool isLiteral = text.size() - before == event.end - event.begin;
    if (event.isContinuation && !pieces.empty()) {
      pieces.back() = {text.size(), event.end, false};
    } else {
      pieces.push_back({text.size(), event.end, isLiteral});
    }
  }

  std::optional<std::size_t> endOf(std::string_view wanted) const {
    const std::size_t found = text.find(wanted);
    // Nothing would be found everywhere, even where there is no piece to end it.
    if (wanted.empty() || found == std::string::npos) {
      return std::nullopt;
    }
    const std::size_t textEnd = found + wanted.size();
    const auto piece =
        std::lower_bound(pieces.begin(), pieces.end(), textEnd,
                         [](const Piece &left, std::size_t end) { return left.textEnd < end; });
    return piece->isLiteral ? piece->documentEnd - (piece->textEnd - textEnd) : piece->documentEnd;
  }
};

}  // namespace

std::expected<DocumentText, std::string> readDocumentText(std::string_view rtf) {
  return CitationFinder(rtf).find();
}

std::expected<std::optional<std::size_t>, std::string> findEndOfText(std::string_view rtf,
                                                                     std::string_view text) {
  TextReader reader(rtf);
  std::string wanted;
  appendPlainText(wanted, text);
  std::vector<SearchedParagraph> stories(1);
  std::optional<std::size_t> found;
  for (;;) {
    const TextEvent event = reader.next();
    if (event.kind == TextEventKind::failure) {
      return std::unexpected(reader.error());
    }
    if (event.kind == TextEventKind::text) {
      stories.back().append(event);
      continue;
    }
    if (event.kind == TextEventKind::storyBegin) {
      stories.emplace_back();
      continue;
    }
    if (!found) {
      found = stories.back().endOf(wanted);
    }
    if (event.kind == TextEventKind::documentEnd) {
      return found;
    }
    stories.back() = SearchedParagraph{};
    if (event.kind == TextEventKind::storyEnd) {
      stories.pop_back();
    }
  }
}

}  // namespace mellel::rtf
