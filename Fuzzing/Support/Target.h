// A fuzz target: a function that takes any bytes, uses the code under test, and states what must
// hold of the outcome.
//
// A source of this folder defines `fuzzing::run`, and nothing else of it is seen from outside. With
// libFuzzer it is called with inputs without end; in the ordinary tests ReplayCorpus.cpp calls it
// with each input of the target's corpus.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <source_location>
#include <string_view>

namespace fuzzing {

// The bytes lie on the heap in an allocation of exactly their size.
void run(std::string_view bytes);

// Ends the process with the line of the statement that does not hold: a finding.
inline void require(bool holds,
                    const std::source_location &place = std::source_location::current()) {
  if (!holds) {
    std::fprintf(stderr, "%s:%u: what is required here does not hold\n", place.file_name(),
                 static_cast<unsigned>(place.line()));
    std::abort();
  }
}

}  // namespace fuzzing
