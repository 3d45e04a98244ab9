// The items of a document in the order of first mention: citation numbers follow it.
#pragma once

#include "CitationProcessor.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace korvo::engine {

struct CitedItems {
  std::vector<std::string_view> ids;  // views into the keys of `places`
  std::vector<bool> listed;
  std::unordered_map<std::string, std::size_t> places;
  std::size_t citeCount = 0;

  CitedItems(std::size_t groupCount, const CitationProcessor::GroupLookup &groupAt) {
    for (std::size_t group = 0; group < groupCount; ++group) {
      for (const Cite &cite : groupAt(group)) {
        ++citeCount;
        const auto [place, isNew] = places.try_emplace(cite.itemId, ids.size());
        if (isNew) {
          ids.push_back(place->first);
          listed.push_back(false);
        }
        listed[place->second] = listed[place->second] || cite.includeInBibliography;
      }
    }
  }
};

}  // namespace korvo::engine
