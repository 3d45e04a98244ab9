// The items of a document in the order of first mention: citation numbers follow it.
#pragma once

#include "CitationProcessor.h"

#include <cstddef>
#include <span>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace korvo::engine {

// Its texts are views into the groups.
struct CitedItems {
  std::vector<std::string_view> ids;
  std::vector<bool> listed;
  std::unordered_map<std::string_view, std::size_t> places;

  explicit CitedItems(std::span<const CiteGroup> groups) {
    for (const CiteGroup &group : groups) {
      for (const Cite &cite : group) {
        const auto [place, isNew] = places.try_emplace(cite.itemId, ids.size());
        if (isNew) {
          ids.push_back(cite.itemId);
          listed.push_back(false);
        }
        listed[place->second] = listed[place->second] || cite.includeInBibliography;
      }
    }
  }
};

}  // namespace korvo::engine
