// Documents and libraries made at random, the same for the same seed, and the slow way of
// formatting them that the fast one is compared with.
#pragma once

#include "EngineDocument.h"

#include <random>

namespace korvo_test {

// A work of few possible names, titles and years; the index tells it from all others.
std::string collidingItem(std::mt19937 &random, std::size_t index);
// Few names, titles and years, so that works must be told apart all the time. The ids are
// "item0" and so on.
Items collidingLibrary(std::mt19937 &random, std::size_t count);

// Cites of items "item0" up to the number given.
CiteGroup randomGroup(std::mt19937 &random, std::size_t items);
std::vector<CiteGroup> randomGroups(std::mt19937 &random, std::size_t count, std::size_t items);

// Formats citation by citation, as the authors of citeproc-js meant it to be used.
korvo::engine::CitationProcessor &referenceProcessor();

}  // namespace korvo_test
