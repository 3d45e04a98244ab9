// The three requests: read like the slow reference, and written and read again without a change.

#include <Formats/ScanRequest.h>
#include <Fuzzing/Support/FuzzedData.h>
#include <Fuzzing/Support/Target.h>
#include <Tests/Support/ReferenceScanRequest.h>

namespace fuzzing {

namespace {

using Citations = std::vector<std::string_view>;

bool sameTexts(const Citations &citations, const std::vector<std::string> &expected) {
  return Citations(expected.begin(), expected.end()) == citations;
}

// Each text as the second of its pair: there it stands as it is.
std::vector<formats::CitationPair> asSecondTexts(const Citations &citations) {
  std::vector<formats::CitationPair> pairs;
  for (const std::string_view citation : citations) {
    pairs.push_back({"", citation});
  }
  return pairs;
}

void readPreliminaryScanRequest(const std::string &payload) {
  const auto request = formats::decodePreliminaryScanRequest(payload);
  const auto expected = reference::decodePreliminaryScanRequest(payload);
  require(request.documentID == expected.documentID);
  require(request.announcedCount == expected.announcedCount);
  require(sameTexts(request.citations, expected.citations));

  std::vector<formats::CitationPair> pairs;
  for (const std::string_view citation : request.citations) {
    pairs.push_back({citation, "second"});
  }
  const std::string again = formats::encodePreliminaryScanRequest(request.documentID, pairs);
  const auto reread = formats::decodePreliminaryScanRequest(again);
  require(reread.documentID == request.documentID);
  require(reread.announcedCount == request.citations.size());
  require(reread.citations == request.citations);
}

void readFinalScanRequest(const std::string &payload) {
  const auto request = formats::decodeFinalScanRequest(payload);
  const auto expected = reference::decodeFinalScanRequest(payload);
  require(request.documentID == expected.documentID);
  require(request.wantsBibliography == expected.wantsBibliography);
  require(request.styleName == expected.styleName);
  require(request.announcedCount == expected.announcedCount);
  require(sameTexts(request.citations, expected.citations));

  const std::string again =
      formats::encodeLiveBibliographyRequest(request.documentID, request.wantsBibliography,
                                             request.styleName, asSecondTexts(request.citations));
  const auto reread = formats::decodeLiveBibliographyRequest(again);
  require(reread.documentID == request.documentID);
  require(reread.wantsBibliography == request.wantsBibliography);
  require(reread.styleName == request.styleName);
  require(reread.announcedCount == request.citations.size());
  require(reread.citations == request.citations);
}

}  // namespace

void run(std::string_view bytes) {
  // The decoders read the very bytes first, to be seen reading past them; the reference needs a
  // copy.
  formats::decodePreliminaryScanRequest(bytes);
  formats::decodeFinalScanRequest(bytes);
  const std::string payload(bytes);
  readPreliminaryScanRequest(payload);
  readFinalScanRequest(payload);
}

}  // namespace fuzzing
