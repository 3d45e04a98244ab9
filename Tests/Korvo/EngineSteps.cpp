#include "EngineSteps.h"

#include "EngineDocument.h"

#include <StandIns/Korvo/Engine/EmbeddedScripts.h>

namespace korvo_test {
namespace {

constexpr std::string_view counting = R"(
  var steps = 0;
  const push = Array.prototype.push;
  Array.prototype.push = function (...values) {
    steps += 1;
    return push.apply(this, values);
  };
  const find = Array.prototype.indexOf;
  Array.prototype.indexOf = function (...wanted) {
    const place = find.apply(this, wanted);
    steps += place < 0 ? this.length : place + 1;
    return place;
  };
)";
constexpr std::string_view showing = R"(
  const { formatDocument, rehearseDocument } = korvo;
  korvo = {
    rehearseDocument,
    formatDocument(...request) {
      steps = 0;
      const answer = formatDocument(...request);
      answer.texts[answer.groups[0]] = String(steps);
      return answer;
    },
  };
)";

}  // namespace

StepCounter::StepCounter()
    : script_(std::string(counting) + std::string(korvo::engine::citationScript()) +
              std::string(showing)),
      processor_("/usr/share/citation-style-language/locales", script_) {}

double stepsOf(const korvo::engine::FormattedDocument &document) {
  return std::stod(markup(document.group(0)));
}

}  // namespace korvo_test
