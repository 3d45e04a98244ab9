#import <SubstituteHostObjects/KOBibStyle.h>

#include <map>
#include <set>
#include <unordered_map>
#include <utility>
#include <vector>

#import <SubstituteHostObjects/AttributedCitations.h>
#import <SubstituteHostObjects/KOCitation.h>
#import <SubstituteHostObjects/KOCitationGroup.h>
#import <SubstituteHostObjects/KOFormattedGroup.h>
#import <SubstituteHostObjects/KOLibrary.h>
#import <SubstituteHostObjects/KOReference.h>
#import <SubstituteHostObjects/Owned.h>
#import <SubstituteHostObjects/TextBridge.h>

namespace {

using host::Owned;

// The citations of one group as they stand in the document's array.
struct Place {
  NSRange citations;
  bool isResolved = true;     // false: a reference is missing; shown as it was written
  std::size_t formatted = 0;  // which of the engine's groups it is, where it is resolved
};

struct Document {
  std::vector<Place> places;
  std::vector<engine::CiteGroup> groups;
  std::unordered_map<std::string, std::string> items;  // CSL-JSON by UUID
  // Each reference is looked up once. The libraries outlive the citations, which retain them.
  std::map<std::pair<KOLibrary *, library::ReferenceRow>, std::string> uuids;
  std::set<KOLibrary *> libraries;
};

// Citations that follow each other and belong to one group stand together; a citation
// without a group stands alone.
std::vector<Place> placesOf(NSArray *citations) {
  std::vector<Place> places;
  KOCitationGroup *previous = nil;
  for (NSUInteger index = 0; index < [citations count]; ++index) {
    KOCitationGroup *group = [(KOCitation *)[citations objectAtIndex:index] group];
    if (group != nil && group == previous) {
      ++places.back().citations.length;
    } else {
      places.push_back({.citations = NSMakeRange(index, 1)});
    }
    previous = group;
  }
  return places;
}

engine::Cite citeOf(KOCitation *citation, std::string itemId) {
  const host::CitationParts &parts = [citation parts];
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

// The UUID under which the document has the reference; empty when there is none to be had.
std::string addItem(KOReference *reference, Document &document) {
  document.libraries.insert([reference library]);
  std::string uuid = host::utf8([reference UUID]);
  if (uuid.empty() || document.items.contains(uuid)) return uuid;
  const auto json = [reference cslJson];
  if (!json || !*json) return {};
  document.items.emplace(uuid, **json);
  return uuid;
}

std::string itemOf(KOCitation *citation, Document &document) {
  id reference = [citation reference];
  if (![reference isKindOfClass:[KOReference class]]) return {};
  const auto [place, isNew] = document.uuids.try_emplace(
      std::pair([(KOReference *)reference library], [(KOReference *)reference row]));
  if (isNew) place->second = addItem(reference, document);
  return place->second;
}

Document documentOf(NSArray *citations) {
  Document document;
  document.places = placesOf(citations);
  for (Place &place : document.places) {
    engine::CiteGroup group;
    for (NSUInteger index = 0; index < place.citations.length; ++index) {
      KOCitation *citation = [citations objectAtIndex:place.citations.location + index];
      std::string item = itemOf(citation, document);
      if (item.empty()) place.isResolved = false;
      group.push_back(citeOf(citation, std::move(item)));
    }
    place.formatted = document.groups.size();
    if (place.isResolved) document.groups.push_back(std::move(group));
  }
  return document;
}

// {Nobody 1900; Smith 2001#SMI2001@45}
NSAttributedString *writtenGroup(NSArray *citations, NSRange range) {
  std::u16string text = u"{";
  for (NSUInteger index = 0; index < range.length; ++index) {
    KOCitation *citation = [citations objectAtIndex:range.location + index];
    std::u16string tag;
    if (id reference = [citation reference]; [reference isKindOfClass:[KOReference class]]) {
      const auto summary = [(KOReference *)reference summary];
      if (summary && *summary) {
        tag = host::utf16(host::stringFromUTF8((*summary)->identifier));
      }
    }
    if (tag == [citation parts].searchString) tag.clear();
    if (index > 0) text += u"; ";
    text += host::writtenCitation([citation parts], tag);
  }
  return host::plainAttributedText(host::stringFromUTF16(text + u"}"));
}

NSArray *citationsOfOurOwn(NSArray *citations) {
  NSMutableArray *own = [NSMutableArray arrayWithCapacity:[citations count]];
  for (NSUInteger index = 0; index < [citations count]; ++index) {
    id citation = [citations objectAtIndex:index];
    if ([citation isKindOfClass:[KOCitation class]]) [own addObject:citation];
  }
  return own;
}

}  // namespace

@interface KOBibStyle (Formatting)
- (KOFormattedDocument *)formatDocument:(NSArray *)citations;
- (KOFormattedDocument *)documentOfCitations:(NSArray *)citations;
@end

@implementation KOBibStyle

- (id)initWithStyle:(engine::Style)described
          processor:(std::shared_ptr<engine::CitationProcessor>)processor
           reporter:(id<KOProblemReporter>)reporter {
  self = [super init];
  if (self != nil) {
    style_ = std::move(described);
    processor_ = std::move(processor);
    reporter_ = [reporter retain];
  }
  return self;
}

- (void)dealloc {
  [reporter_ release];
  [super dealloc];
}

- (NSString *)name {
  return host::stringFromUTF8(style_.name.title);
}

- (BOOL)useSuperscriptInInTextCitations {
  return style_.usesSuperscript ? YES : NO;
}

- (void)setPropertiesInCitationArray:(NSArray *)citations {
  (void)[self formatDocument:citationsOfOurOwn(citations)];
}

- (NSAttributedString *)attributedBibliographyStringForCitationArray:(NSArray *)citations
                                                          attributes:(NSMutableDictionary *)
                                                                         documentAttributes {
  (void)documentAttributes;  // the document's margins stay the word processor's affair
  NSArray *own = citationsOfOurOwn(citations);
  KOFormattedDocument *document = [self documentOfCitations:own];
  if (document == nil) document = [self formatDocument:own];
  return [document bibliography];
}

- (NSAttributedString *)attributedGroupStringForCitationArray:(NSArray *)citations {
  NSArray *own = citationsOfOurOwn(citations);
  if ([own count] == 0) return host::plainAttributedText(@"");
  KOFormattedGroup *group = [(KOCitation *)[own objectAtIndex:0] formattedGroup];
  bool isFormatted =
      group != nil && [[group document] style] == self && [group citationCount] == [own count];
  for (NSUInteger index = 0; isFormatted && index < [own count]; ++index) {
    isFormatted = [(KOCitation *)[own objectAtIndex:index] formattedGroup] == group;
  }
  if (isFormatted) return [group text];

  // Asked for by itself, the array is one group, whatever its citations belong to.
  KOCitationGroup *alone = [[[KOCitationGroup alloc] init] autorelease];
  for (NSUInteger index = 0; index < [own count]; ++index) {
    KOCitation *original = [own objectAtIndex:index];
    [alone addCitation:[original unformattedCopy]];
  }
  NSArray *copies = [alone citations];
  (void)[self formatDocument:copies];
  return [[(KOCitation *)[copies objectAtIndex:0] formattedGroup] text];
}

// What all of the citations, and no others, were last formatted as in this style; nil when
// there is no such document.
- (KOFormattedDocument *)documentOfCitations:(NSArray *)citations {
  if ([citations count] == 0) return nil;
  KOFormattedDocument *document =
      [[(KOCitation *)[citations objectAtIndex:0] formattedGroup] document];
  if ([document style] != self || [document citationCount] != [citations count]) return nil;
  for (NSUInteger index = 0; index < [citations count]; ++index) {
    KOCitation *citation = [citations objectAtIndex:index];
    if ([[citation formattedGroup] document] != document) return nil;
  }
  return document;
}

- (KOFormattedDocument *)formatDocument:(NSArray *)citations {
  const Document document = documentOf(citations);
  // Formatting takes seconds: other programs may write to the libraries meanwhile.
  for (KOLibrary *library : document.libraries) [library endTurn];
  const auto lookUp = [&](std::string_view item) -> std::optional<std::string> {
    const auto found = document.items.find(std::string(item));
    if (found == document.items.end()) return std::nullopt;
    return found->second;
  };
  const auto formatted = processor_->formatDocument(style_, lookUp, document.groups, true);
  if (!formatted) [reporter_ reportProblem:host::stringFromUTF8(formatted.error())];

  NSAttributedString *bibliography = formatted
                                         ? host::attributedBibliography(formatted->bibliography)
                                         : host::plainAttributedText(@"");
  KOFormattedDocument *result =
      [[[KOFormattedDocument alloc] initWithStyle:self
                                     bibliography:bibliography
                                    citationCount:[citations count]] autorelease];
  for (const Place &place : document.places) {
    NSAttributedString *text = formatted && place.isResolved
                                   ? host::attributedText(formatted->groups[place.formatted])
                                   : writtenGroup(citations, place.citations);
    const auto group = Owned<KOFormattedGroup *>::taking([[KOFormattedGroup alloc]
        initWithDocument:result
                    text:text
           citationCount:place.citations.length]);
    for (NSUInteger index = 0; index < place.citations.length; ++index) {
      KOCitation *citation = [citations objectAtIndex:place.citations.location + index];
      [citation setFormattedGroup:group.get()];
    }
  }
  return result;
}

@end
