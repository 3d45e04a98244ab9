// How much an engine does for a document, counted in steps: what it puts into lists, and what it
// looks at to find something in one. Rules are made of little else, and so is what is printed by
// them. No machine is too slow for that.
#pragma once

#include <StandIns/Korvo/Engine/CitationProcessor.h>

#include <string>

namespace korvo_test {

// Its documents show, in place of the first group's text, what stepsOf reads. The steps of
// rehearsals are not counted.
class StepCounter {
 public:
  StepCounter();
  korvo::engine::CitationProcessor &processor() { return processor_; }

 private:
  std::string script_;
  korvo::engine::CitationProcessor processor_;
};

double stepsOf(const korvo::engine::FormattedDocument &document);

}  // namespace korvo_test
