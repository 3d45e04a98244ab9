#import "CitedDocument.h"

#import "AttributedCitations.h"
#import "StringConversion.h"

#include <utility>

namespace korvo::adapter {
namespace {

engine::Cite citeOf(KOCitation *citation, std::string itemId) {
  const CitationParts &parts = [citation parts];
  return {.itemId = std::move(itemId),
          .pageRange = parts.pageRange,
          .prefix = parts.prependString,
          .suffix = parts.appendString,
          .yearOnly = parts.useYearOnly,
          .showInText = parts.includeInBody,
          .includeInBibliography = parts.includeInBibliography,
          .stripEnclosure = parts.stripEnclosure,
          .suppressSuperscript = parts.suppressSuperscript};
}

CitedDocument::Place placeOf(KOReference *reference) {
  return {[reference library], [reference row]};
}

class Reader {
 public:
  explicit Reader(CitedDocument &document) : document_(document) {}

  // The UUID under which the document has the citation's reference; empty when there is none to be
  // had.
  const std::string &itemOf(KOCitation *citation) {
    static const std::string nothing;
    KOReference *reference = ownReferenceOf(citation);
    if (reference == nil) {
      return nothing;
    }
    // Each reference is looked up once. The libraries outlive the citations, which retain them.
    const auto [place, isNew] = document_.uuids.try_emplace(placeOf(reference));
    if (isNew) {
      place->second = addItem(reference);
    }
    return place->second;
  }

  void finish() {
    for (auto &[library, version] : document_.versions) {
      if ([library libraryOfThisTurn].version() != version) {
        version.reset();
      }
      [library endTurn];
    }
  }

 private:
  std::string addItem(KOReference *reference) {
    KOLibrary *library = [reference library];
    document_.versions.try_emplace(library, [library libraryOfThisTurn].version());
    std::string uuid = utf8([reference UUID]);
    if (uuid.empty() || document_.items.contains(uuid)) {
      return uuid;
    }
    const auto json = [reference cslJson];
    if (!json || !*json) {
      return {};
    }
    document_.items.emplace(uuid, **json);
    return uuid;
  }

  CitedDocument &document_;
};

}  // namespace

Citations citationsIn(NSArray *array) {
  static const Class citationClass = [KOCitation class];
  std::vector<id> objects([array count]);
  [array getObjects:objects.data() range:NSMakeRange(0, objects.size())];
  Citations citations;
  citations.reserve(objects.size());
  for (const id object : objects) {
    if ([object isKindOfClass:citationClass]) {
      citations.push_back(object);
    }
  }
  return citations;
}

KOReference *ownReferenceOf(KOCitation *citation) {
  static const Class referenceClass = [KOReference class];
  const id reference = [citation reference];
  return [reference isKindOfClass:referenceClass] ? reference : nil;
}

std::vector<CitedGroup> groupsOf(std::span<KOCitation *const> citations) {
  std::vector<CitedGroup> groups;
  KOCitationGroup *previous = nil;
  for (std::size_t index = 0; index < citations.size(); ++index) {
    KOCitationGroup *group = [citations[index] group];
    if (group != nil && group == previous) {
      ++groups.back().count;
    } else {
      groups.push_back({.first = index, .count = 1});
    }
    previous = group;
  }
  return groups;
}

NSAttributedString *writtenGroup(std::span<KOCitation *const> citations) {
  std::u16string text;
  for (KOCitation *citation : citations) {
    text += text.empty() ? u"{" : u"; ";
    std::u16string tag;
    if (KOReference *reference = ownReferenceOf(citation)) {
      const auto summary = [reference summary];
      if (summary && *summary) {
        tag = utf16(stringFromUTF8((*summary)->identifier));
      }
    }
    if (tag == [citation parts].searchString) {
      tag.clear();
    }
    text += writtenCitation([citation parts], tag);
  }
  return plainAttributedText(stringFromUTF16(text + u"}"));
}

void readCites(std::span<KOCitation *const> citations, const CitedDocument &document,
               engine::CiteGroup &cites) {
  cites.clear();
  for (KOCitation *citation : citations) {
    cites.push_back(citeOf(citation, document.uuids.at(placeOf(ownReferenceOf(citation)))));
  }
}

CitedDocument readDocument(std::span<KOCitation *const> citations,
                           std::span<const CitedGroup> groups) {
  CitedDocument document;
  Reader reader(document);
  document.groups.reserve(groups.size());
  document.asked.reserve(groups.size());
  for (const CitedGroup &place : groups) {
    const auto cited = citations.subspan(place.first, place.count);
    bool isResolved = true;
    for (KOCitation *citation : cited) {
      isResolved = !reader.itemOf(citation).empty() && isResolved;
    }
    CitedDocument::Group &read = document.groups.emplace_back();
    read.isAsked = isResolved;
    if (isResolved) {
      document.asked.push_back(place);
    } else {
      read.written = Owned<NSAttributedString *>::retaining(writtenGroup(cited));
    }
  }
  reader.finish();
  return document;
}

}  // namespace korvo::adapter
