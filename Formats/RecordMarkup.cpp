#include "RecordMarkup.h"

#include "BlockScan.h"
#include "PayloadWriter.h"
#include "Unicode.h"
#include "VerifiedMarker.h"

namespace formats {

namespace {

constexpr std::u16string_view header = u"<?xml version=\"1.0\" encoding=\"UTF-8\"?><xml><records>";
constexpr std::u16string_view beforeTag = u"<record><korvo>";
constexpr std::u16string_view beforeNumber = u"</korvo><rec-number>";
constexpr std::u16string_view afterNumber = u"</rec-number></record>";
constexpr std::u16string_view trailer = u"</records></xml>";
constexpr std::size_t frameLength = header.size() + trailer.size();
constexpr std::size_t recordLength = beforeTag.size() + beforeNumber.size() + afterNumber.size();

template <typename Visit>
void forEachComponent(std::u16string_view citation, Visit visit) {
  for (;;) {
    const std::size_t end = findFirst(citation, 0, [](char16_t unit) { return unit == u';'; });
    visit(citation.substr(0, end));
    if (end == citation.size()) {
      return;
    }
    citation.remove_prefix(end + 1);
  }
}

void appendRecord(std::u16string &markup, std::u16string_view tag) {
  markup.append(beforeTag).append(tag).append(beforeNumber).append(tag).append(afterNumber);
}

}  // namespace

std::vector<std::u16string_view> citationComponents(std::u16string_view citation) {
  std::vector<std::u16string_view> components;
  forEachComponent(citation,
                   [&](std::u16string_view component) { components.push_back(component); });
  return components;
}

std::u16string recordMarkupForComponents(std::u16string_view citation) {
  if (citation.empty()) {
    return {};
  }
  const std::size_t components = 1 + count(citation, [](char16_t unit) { return unit == u';'; });
  std::u16string markup;
  markup.reserve(frameLength + components * recordLength + 2 * citation.size());
  markup.append(header);
  forEachComponent(citation, [&](std::u16string_view component) {
    appendRecord(markup, withoutVerifiedMarkers(component));
  });
  markup.append(trailer);
  return markup;
}

std::size_t sizeOfRecordMarkupForComponents(std::u16string_view citation) {
  constexpr char16_t nul = 0;
  if (citation.empty() || citation.contains(nul)) {
    // What is written ends at a NUL.
    return sizeOfString(recordMarkupForComponents(citation));
  }
  // All but the tags is ASCII.
  std::size_t size = frameLength + sizeOfString({});
  forEachComponent(citation, [&](std::u16string_view component) {
    size += recordLength + 2 * lengthInUTF8(withoutVerifiedMarkers(component));
  });
  return size;
}

std::u16string recordMarkupForInsertion(std::u16string_view citation) {
  std::u16string markup;
  markup.reserve(frameLength + recordLength + 2 * citation.size());
  markup.append(header);
  appendRecord(markup, citation);
  markup.append(trailer);
  return markup;
}

std::vector<std::string_view> tagsInRecordMarkup(std::string_view markup) {
  constexpr std::string_view opening = "<korvo>";
  constexpr std::string_view closing = "</korvo>";
  std::vector<std::string_view> tags;
  for (;;) {
    const std::size_t start = markup.find(opening);
    if (start == std::string_view::npos) {
      return tags;
    }
    markup.remove_prefix(start + opening.size());
    const std::size_t end = markup.find(closing);
    if (end == std::string_view::npos) {
      return tags;
    }
    tags.push_back(markup.substr(0, end));
    markup.remove_prefix(end + closing.size());
  }
}

}  // namespace formats
