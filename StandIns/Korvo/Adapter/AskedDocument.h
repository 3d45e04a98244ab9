// A document that was asked for, kept to tell whether the same is asked for again.
//
// An answer depends on the style, on what each citation asks for, on which of them stand together,
// and on the references. Of these it is enough to compare which they are, as long as nobody has
// written to their libraries: that is what makes the comparison cheap.
#pragma once

#import "CitedDocument.h"
#import "Owned.h"

#include <StandIns/Korvo/Engine/StyleCatalog.h>

#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace korvo::adapter {

// What a style is asked: to be read as long as the texts and objects it names are there.
struct DocumentRequest {
  const engine::Style &style;
  std::string_view styleText;  // the content of the style's file
  std::span<KOCitation *const> citations;
  std::span<const CitedGroup> groups;
};

class AskedDocument {
 public:
  // Nothing, where a library's version is not known.
  static std::optional<AskedDocument> of(const DocumentRequest &request,
                                         const CitedDocument::Versions &versions);

  // Whether nobody has written to its libraries since.
  bool isUpToDate() const;

  // Whether whoever answered the first time would give the same answer to this, as long as it is up
  // to date.
  bool isAskedAgainBy(const DocumentRequest &request) const;

 private:
  struct Citation {
    KOLibrary *library = nil;  // nil: it has no reference
    library::ReferenceRow row = 0;
    std::shared_ptr<const CitationParts> parts;
  };
  struct Source {
    Owned<KOLibrary *> library;
    library::Library::Version version;
  };

  static bool isSame(const Citation &citation, KOCitation *other);

  std::filesystem::path styleFile_;
  std::string styleText_;
  std::string locale_;
  std::vector<Citation> citations_;
  std::vector<CitedGroup> groups_;
  std::vector<Source> sources_;
};

}  // namespace korvo::adapter
