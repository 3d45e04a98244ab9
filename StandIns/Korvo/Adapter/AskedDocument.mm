#import "AskedDocument.h"

#include <algorithm>

namespace korvo::adapter {

std::optional<AskedDocument> AskedDocument::of(const DocumentRequest &request,
                                               const CitedDocument::Versions &versions) {
  AskedDocument asked;
  for (const auto &[library, version] : versions) {
    if (!version) {
      return std::nullopt;
    }
    asked.sources_.push_back({Owned<KOLibrary *>::retaining(library), *version});
  }
  asked.styleFile_ = request.style.file;
  asked.styleText_ = request.styleText;
  asked.locale_ = request.style.locale;
  asked.groups_.assign(request.groups.begin(), request.groups.end());
  asked.citations_.reserve(request.citations.size());
  for (KOCitation *citation : request.citations) {
    KOReference *reference = ownReferenceOf(citation);
    asked.citations_.push_back(
        {.library = [reference library], .row = [reference row], .parts = [citation partsToKeep]});
  }
  return asked;
}

bool AskedDocument::isUpToDate() const {
  return std::ranges::all_of(sources_, [](const Source &source) {
    return [source.library.get() libraryOfThisTurn].version() == source.version;
  });
}

bool AskedDocument::isAskedAgainBy(const DocumentRequest &request) const {
  return request.citations.size() == citations_.size() &&
         std::ranges::equal(request.groups, groups_) && request.style.file == styleFile_ &&
         request.style.locale == locale_ && request.styleText == styleText_ &&
         std::ranges::equal(citations_, request.citations, isSame);
}

bool AskedDocument::isSame(const Citation &citation, KOCitation *other) {
  KOReference *reference = ownReferenceOf(other);
  return [reference library] == citation.library && [reference row] == citation.row &&
         (citation.parts != nullptr ? [other parts] == *citation.parts
                                    : [other partsToKeep] == nullptr);
}

}  // namespace korvo::adapter
