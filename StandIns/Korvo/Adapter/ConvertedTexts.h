// The attributed texts of the engine's answers, of which those of the last document are remembered:
// the same text gives the same object, with all that it was converted to.
#pragma once

#import "KOConvertedText.h"
#import "Owned.h"

#include <StandIns/Korvo/Engine/FormattedText.h>

#include <cstddef>
#include <memory>
#include <unordered_map>
#include <vector>

namespace korvo::adapter {

class ConvertedTexts {
 public:
  struct Document {
    std::vector<Owned<KOConvertedText *>> groups;  // as many as the engine's
    Owned<KOConvertedText *> bibliography;
  };

  // Forgets what is not of this document.
  Document of(std::shared_ptr<const engine::FormattedDocument> formatted);

 private:
  // The keys are parts of the document that `formatted_` holds.
  struct Hash {
    std::size_t operator()(const engine::FormattedText *text) const;
  };
  struct Equal {
    bool operator()(const engine::FormattedText *one, const engine::FormattedText *other) const;
  };
  using Texts =
      std::unordered_map<const engine::FormattedText *, Owned<KOConvertedText *>, Hash, Equal>;

  std::shared_ptr<const engine::FormattedDocument> formatted_;
  Texts texts_;
  Owned<KOConvertedText *> bibliography_;
};

}  // namespace korvo::adapter
