#import "BareLoop.h"

#include <Formats/CitationText.h>
#include <Formats/Unicode.h>

#include <cstdio>
#include <cstdlib>
#include <optional>

namespace benchmarks {

namespace {

PreparedString prepare(const std::optional<std::u16string_view> &text) {
  if (!text) {
    return {};
  }
  const std::string bytes = formats::encodeUTF8(*text);
  return {bytes, [[NSString alloc] initWithUTF8String:bytes.c_str()]};
}

const std::vector<PreparedCitation> &preparedCitations() {
  static const std::vector<PreparedCitation> prepared = [] {
    std::vector<PreparedCitation> all;
    for (std::size_t place = 0; place < differentCitations; ++place) {
      all.emplace_back(citationAt(place));
    }
    return all;
  }();
  return prepared;
}

// For the strings of a loop, as many turns as the plug-in lets pass.
class TurnPool {
 public:
  ~TurnPool() { [pool_ drain]; }
  void endTurn() {
    if (++turns_ % 16 == 0) {
      [pool_ drain];
      pool_ = [[NSAutoreleasePool alloc] init];
    }
  }

 private:
  NSAutoreleasePool *pool_ = [[NSAutoreleasePool alloc] init];
  int turns_ = 0;
};

}  // namespace

PreparedCitation::PreparedCitation(const std::string &text) {
  const std::u16string units = formats::decodeUTF8(text);
  const formats::CitationText parts = formats::parseCitationText(units);
  group = prepare(units);
  searchText = prepare(parts.searchText);
  tag = prepare(parts.tag);
  pageRange = prepare(parts.pageRange);
  prependText = prepare(parts.prependText);
  appendText = prepare(parts.appendText);
  usesYearOnly = parts.useYearOnly;
}

BareLoop::BareLoop(PreparedHost *host, Strings strings, std::size_t citationCount)
    : host_(host), strings_(strings), citationCount_(citationCount) {}

void BareLoop::prepareNext() {
  first_ = (first_ + citationCount_) % differentCitations;
  [host_ prepareDocumentOfCitations:citationCount_ from:first_];
}

// The notices of what matches nothing are left out: one citation in `citationsForOneUnknown`.
void BareLoop::finalScan() {
  id<KorvoBibStyle> style = [host_ bibStyleNamed:@"Prepared Style"];
  [style name];
  id<KorvoLibrary> library = [host_ currentLibrary];
  NSMutableArray *groups = [[NSMutableArray alloc] initWithCapacity:citationCount_];
  {
    TurnPool pool;
    for (std::size_t index = 0; index < citationCount_; ++index) {
      [groups addObject:group(citationOfDocument(index), library)];
      pool.endTurn();
    }
  }
  NSArray *citations = [host_ citationArrayForCitationGroupArray:groups];
  [style setPropertiesInCitationArray:citations];
  NSMutableArray *texts = [[NSMutableArray alloc] initWithCapacity:citationCount_];
  for (std::size_t index = 0; index < citationCount_; ++index) {
    [texts addObject:[style attributedGroupStringForCitationArray:[[groups objectAtIndex:index]
                                                                      citations]]];
  }
  for (std::size_t index = 0; index < citationCount_; ++index) {
    [host_ pidginRTFForAttributedString:[texts objectAtIndex:index]];
  }
  NSAttributedString *bibliography = [style attributedBibliographyStringForCitationArray:citations
                                                                              attributes:nil];
  [bibliography RTFFromRange:NSMakeRange(0, [bibliography length]) documentAttributes:nil];
  [style useSuperscriptInInTextCitations];
  for (std::size_t index = 0; index < citationCount_; ++index) {
    [host_ pidginRTFForAttributedString:[texts objectAtIndex:index]];
  }
  [texts release];
  [groups release];
  if (![host_ wasAskedForWholeDocument]) {
    std::fputs("The bare loop did not ask for the whole document\n", stderr);
    std::exit(1);
  }
}

void BareLoop::preliminaryScan() {
  id<KorvoLibrary> library = [host_ currentLibrary];
  TurnPool pool;
  for (std::size_t index = 0; index < citationCount_; ++index) {
    [host_ referencesMatchingTag:stringOf(citationOfDocument(index).group) inLibrary:library];
    pool.endTurn();
  }
}

const PreparedCitation &BareLoop::citationOfDocument(std::size_t index) const {
  return preparedCitations()[(first_ + index) % differentCitations];
}

// The shortest way to a string that Cocoa has.
NSString *BareLoop::stringOf(const PreparedString &prepared) const {
  static const Class stringClass = [NSString class];
  return strings_ == Strings::inAdvance || prepared.string == nil
             ? prepared.string
             : [stringClass stringWithUTF8String:prepared.bytes.c_str()];
}

id<KorvoCitationGroup> BareLoop::group(const PreparedCitation &prepared,
                                       id<KorvoLibrary> library) const {
  NSArray *texts = [host_ citationStringArrayForCitationGroupString:stringOf(prepared.group)];
  id<KorvoCitationGroup> group = [host_ createCitationGroup];
  for (NSUInteger index = 0; index < [texts count]; ++index) {
    [texts objectAtIndex:index];
    [group addCitation:citation(prepared, library)];
  }
  return group;
}

id<KorvoCitation> BareLoop::citation(const PreparedCitation &prepared,
                                     id<KorvoLibrary> library) const {
  id<KorvoCitation> citation = [host_ createCitation];
  if (NSString *pageRange = stringOf(prepared.pageRange)) {
    [citation setPageRange:pageRange];
  }
  NSSet *matches = [host_ referencesMatchingTag:stringOf(prepared.tag) inLibrary:library];
  const bool isFound = [matches count] == 1;
  if (isFound) {
    [citation setReference:[matches anyObject]];
  }
  if (prepared.usesYearOnly) {
    [citation setUseYearOnly:YES];
  }
  if (NSString *prependText = stringOf(prepared.prependText)) {
    [citation setInTextPrependString:prependText];
  }
  if (NSString *appendText = stringOf(prepared.appendText)) {
    [citation setInTextAppendString:appendText];
  }
  NSString *searchText = stringOf(prepared.searchText);
  [citation setSearchString:searchText];
  if (!isFound) {
    [[host_ referencesMatchingTag:searchText inLibrary:library] count];
  }
  return citation;
}

}  // namespace benchmarks
