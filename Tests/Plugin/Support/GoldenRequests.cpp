#include "GoldenRequests.h"

#include <Formats/CitationResolution.h>
#include <Formats/ScanRequest.h>

#include <algorithm>

namespace plugin_test {
namespace {

using namespace std::string_literals;

using Pairs = std::vector<formats::CitationPair>;

const Pairs none;
const Pairs one = {{"Smith 2001#SMI2001@45", "x"}};
const Pairs several = {{"verified Smith 2001", "Smith 2001"},
                       {"!%\\see \\Smith 2001\\, fig. 2\\#SMI2001@45-47;Jones 1999", ""},
                       {"", "verified Müller"},
                       {"Nobody 1900", "Nobody"},
                       {"#SMI2001", "@"}};

std::vector<GoldenRequest> makeGoldenRequests() {
  return {
      {"handshake", "IMHR", "\0\5\0\1"s},
      {"handshake of nothing", "IMHR", std::nullopt},
      {"insertion", "FIND", "not read"},
      {"insertion of nothing", "FIND", std::nullopt},
      {"lookup", "FNDN", "Smith 2001#SMI2001@45\0"s},
      {"lookup of several", "FNDN", "Jones 1999;Smith 2001\0"s},
      {"lookup of two matches", "FNDN", "Müller\0"s},
      {"lookup of nobody", "FNDN", "^Nobody 1900\0"s},
      {"lookup of nothing", "FNDN", "\0"s},
      {"preliminary scan of none", "PRSQ", formats::encodePreliminaryScanRequest(7, none)},
      {"preliminary scan of one", "PRSQ", formats::encodePreliminaryScanRequest(0xFFFFFFFF, one)},
      {"preliminary scan of several", "PRSQ", formats::encodePreliminaryScanRequest(258, several)},
      {"final scan of none", "SCNQ", formats::encodeFinalScanRequest(7, false, "APA", none)},
      {"final scan of one", "SCNQ", formats::encodeFinalScanRequest(9, true, "APA", one)},
      {"final scan of several", "SCNQ", formats::encodeFinalScanRequest(258, true, "APA", several)},
      {"final scan by dialog", "SCNQ", formats::encodeFinalScanRequest(7, true, "", one)},
      {"final scan of nothing", "SCNQ", std::nullopt},
      {"live bibliography of none", "LVBQ",
       formats::encodeLiveBibliographyRequest(7, true, "APA", none)},
      {"live bibliography of one", "LVBQ",
       formats::encodeLiveBibliographyRequest(9, false, "APA", one)},
      {"live bibliography of several", "LVBQ",
       formats::encodeLiveBibliographyRequest(258, true, "APA", several)},
      {"live bibliography in no style", "LVBQ",
       formats::encodeLiveBibliographyRequest(7, false, "", one)},
      {"import", "SYNC", "anything"},
      {"retired scan", "Rmci", "anything"},
  };
}

}  // namespace

const std::vector<GoldenRequest> &goldenRequests() {
  static const std::vector<GoldenRequest> all = makeGoldenRequests();
  return all;
}

const GoldenRequest &goldenRequestNamed(std::string_view name) {
  return *std::ranges::find(goldenRequests(), name, &GoldenRequest::name);
}

}  // namespace plugin_test
