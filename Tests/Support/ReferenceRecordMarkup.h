// The XML texts, put together and taken apart character by character.
#pragma once

#include "ReferenceVerifiedMarker.h"

#include <string>
#include <vector>

namespace reference {

inline std::vector<std::u16string> citationComponents(const std::u16string &citation) {
  std::vector<std::u16string> components(1);
  for (const char16_t character : citation) {
    if (character == u';') {
      components.emplace_back();
    } else {
      components.back() += character;
    }
  }
  return components;
}

inline std::u16string recordMarkupForComponents(const std::u16string &citation) {
  if (citation.empty()) {
    return u"";
  }
  std::u16string markup = u"<?xml version=\"1.0\" encoding=\"UTF-8\"?><xml><records>";
  for (const std::u16string &component : citationComponents(citation)) {
    const std::u16string tag = withoutVerifiedMarkers(component);
    markup += u"<record><korvo>" + tag + u"</korvo><rec-number>" + tag + u"</rec-number></record>";
  }
  return markup + u"</records></xml>";
}

inline bool standsAt(const std::string &text, std::size_t position, const std::string &part) {
  return text.compare(position, part.size(), part) == 0;
}

inline std::vector<std::string> tagsInRecordMarkup(const std::string &markup) {
  std::vector<std::string> tags;
  std::size_t position = 0;
  while (position < markup.size()) {
    if (!standsAt(markup, position, "<korvo>")) {
      ++position;
      continue;
    }
    position += 7;
    std::string tag;
    while (position < markup.size() && !standsAt(markup, position, "</korvo>")) {
      tag += markup[position++];
    }
    if (position < markup.size()) {
      tags.push_back(tag);
      position += 8;
    }
  }
  return tags;
}

}  // namespace reference
