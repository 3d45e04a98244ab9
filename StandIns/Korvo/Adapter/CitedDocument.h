// The citations of a document as a style is shown them, and what the engine is asked for them.
#pragma once

#import "KOCitation.h"
#import "KOLibrary.h"
#import "KOReference.h"
#import "Owned.h"

#include <StandIns/Korvo/Engine/CitationProcessor.h>

#import <Foundation/Foundation.h>

#include <cstddef>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace korvo::adapter {

// Not retained: whoever asks holds the array that they come from.
using Citations = std::vector<KOCitation *>;
// Those of an array that are the host's own; nothing else can be formatted.
Citations citationsIn(NSArray *array);

// The citation's reference; nil where it has none, or one of another host.
KOReference *ownReferenceOf(KOCitation *citation);

// The citations that stand together at one place, by their places in the document.
struct CitedGroup {
  std::size_t first = 0;
  std::size_t count = 0;

  bool operator==(const CitedGroup &) const = default;
};

// Citations that follow each other and belong to one group stand together; a citation without a
// group stands alone.
std::vector<CitedGroup> groupsOf(std::span<KOCitation *const> citations);

// {Nobody 1900; Smith 2001#SMI2001@45}, as its author wrote it. Autoreleased.
NSAttributedString *writtenGroup(std::span<KOCitation *const> citations);

// What is asked for a document, and of which state of its libraries.
struct CitedDocument {
  struct Group {
    bool isAsked = false;
    // In place of an answer, where a reference is missing.
    Owned<NSAttributedString *> written;
  };
  using Place = std::pair<KOLibrary *, library::ReferenceRow>;
  using Versions = std::map<KOLibrary *, std::optional<library::Library::Version>>;

  std::vector<Group> groups;
  std::vector<CitedGroup> asked;  // those that the engine is asked for
  std::map<Place, std::string> uuids;
  std::unordered_map<std::string, std::string> items;  // CSL-JSON by UUID
  // Each library was in one version while its references were read, or else in an unknown one.
  Versions versions;
};

// What the engine is asked for one group, of which every reference was read.
void readCites(std::span<KOCitation *const> citations, const CitedDocument &document,
               engine::CiteGroup &cites);

// Reads the references, and then lets other programs write to their libraries again.
CitedDocument readDocument(std::span<KOCitation *const> citations,
                           std::span<const CitedGroup> groups);

}  // namespace korvo::adapter
