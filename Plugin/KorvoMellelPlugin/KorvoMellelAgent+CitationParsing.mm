// Citation texts to host citations. Formats knows the syntax; what is here asks the host for
// each piece and keeps account of what did not match.

#import "HostArray.h"
#import "KorvoMellelAgent+Private.h"
#import "LoopPool.h"
#import "ProgrammingError.h"
#import "TextBridge.h"

#include <Formats/CitationText.h>
#include <Formats/VerifiedMarker.h>

namespace {

// A notice of thousands of lines helps nobody: once the summary has this many characters, no
// further citations are added.
constexpr NSUInteger summaryLimit = 2500;

// How many of the references that a citation matched are listed.
constexpr NSUInteger listedReferences = 10;

// What one parse carries from citation to citation.
struct Parse {
  id<KorvoWordProcessorIntegrationAdapter> adapter;
  id<KorvoLibrary> library;
  NSMutableAttributedString *summary;
  int32_t citationNumber = 1;
  CodeUnitReader codeUnitsOf = {};

  BOOL summaryHasRoom() const { return [summary length] < summaryLimit; }
};

void setOptions(id<KorvoCitation> citation, const formats::CitationText &text) {
  if (text.excludeFromBody) {
    [citation setIncludeInBody:NO];
  }
  if (text.excludeFromBibliography) {
    [citation setIncludeInBibliography:NO];
  }
  if (text.useYearOnly) {
    [citation setUseYearOnly:YES];
  }
  if (text.suppressSuperscript) {
    [citation setSuppressSuperscript:YES];
  }
  if (text.stripEnclosure) {
    [citation setStripEnclosure:YES];
  }
  if (text.prependText) {
    [citation setInTextPrependString:stringWithCodeUnits(*text.prependText)];
  }
  if (text.appendText) {
    [citation setInTextAppendString:stringWithCodeUnits(*text.appendText)];
  }
}

void append(NSMutableAttributedString *summary, NSString *text, NSDictionary *attributes) {
  [summary appendAttributedString:[[[NSAttributedString alloc]
                                      initWithString:text
                                          attributes:ofClass([NSDictionary class], attributes)]
                                      autorelease]];
}

}  // namespace

@interface KorvoMellelAgent (CitationParsingSteps)
- (id<KorvoCitationGroup>)citationGroupWithString:(NSString *)groupString parse:(Parse &)parse;
- (id<KorvoCitation>)citationWithString:(NSString *)citationString parse:(Parse &)parse;
- (void)lookUpSearchString:(NSString *)searchString
               forCitation:(id<KorvoCitation>)citation
                     parse:(Parse &)parse;
@end

@implementation KorvoMellelAgent (CitationParsing)

- (NSArray *)citationGroupsWithCitationStringArray:(NSArray *)groupStrings {
  const NSUInteger count = [groupStrings count];
  NSMutableArray *groups = [NSMutableArray arrayWithCapacity:count];
  id<KorvoWordProcessorIntegrationAdapter> adapter = [KorvoMellelAgent adapter];
  // Every citation is looked up in the same library, even if the user selects another meanwhile.
  Parse parse = {adapter, [[[adapter currentLibrary] retain] autorelease],
                 [[[NSMutableAttributedString alloc] init] autorelease]};
  LoopPool pool;
  for (NSUInteger index = 0; index < count; ++index) {
    [groups addObject:[self citationGroupWithString:[groupStrings objectAtIndex:index]
                                              parse:parse]];
    pool.endTurn();
  }
  pool.drain();
  if ([parse.summary length] > 0) {
    [self appendNotesToSummary:parse.summary];
    [adapter postNoticeWithHeader:[self localizedText:@"Mellel Refresh Issues"]
                attributedSummary:parse.summary];
  }
  return groups;
}

- (void)appendNotFoundNoticeToSummary:(NSMutableAttributedString *)summary
                              atIndex:(int32_t)number
                               forTag:(NSString *)tag {
  NSString *line = [NSString
      stringWithFormat:[self localizedText:@"Citation %d %@: No matches were found."], number, tag];
  if (!displayedWrongLibraryMessage) {
    displayedWrongLibraryMessage = YES;
    line = [NSString
        stringWithFormat:@"%@\n\n%@\n", line,
                         [self localizedText:@"This problem is often due to having the wrong "
                                             @"library (or no library) selected in the Korvo main "
                                             @"window.  Select the library to which this reference "
                                             @"belongs, and try the scan again."]];
  }
  append(summary, [NSString stringWithFormat:@"\n%@\n", line],
         [[KorvoMellelAgent adapter] subtitleTextAttributes]);
}

- (void)appendDuplicateNoticeToSummary:(NSMutableAttributedString *)summary
                               atIndex:(int32_t)number
                                forTag:(NSString *)tag
                         referenceUsed:(id<KorvoReference>)__attribute__((unused)) referenceUsed
                       referencesFound:(NSSet *)referencesFound {
  id<KorvoWordProcessorIntegrationAdapter> adapter = [KorvoMellelAgent adapter];
  NSString *line =
      [NSString stringWithFormat:[self localizedText:@"Citation %d %@: %d matches were found."],
                                 number, tag, static_cast<int>([referencesFound count])];
  append(summary, [NSString stringWithFormat:@"\n\n%@\n", line], [adapter subtitleTextAttributes]);

  NSEnumerator *references = [referencesFound objectEnumerator];
  NSUInteger listed = 0;
  for (id reference = [references nextObject]; reference != nil;
       reference = [references nextObject]) {
    NSAttributedString *description =
        ofClass([NSAttributedString class], [adapter summaryWithTitleForReference:reference]);
    if (description != nil) {
      [summary appendAttributedString:description];
    }
    append(summary, @"\n", nil);
    if (++listed == listedReferences) {
      append(summary, @"...", [adapter subtitleTextAttributes]);
      append(summary, @"\n", nil);
      break;
    }
  }
}

- (void)appendNotesToSummary:(NSMutableAttributedString *)summary {
  NSString *notes =
      [self localizedText:@"Reconcile any discrepancies by assigning a unique \"Citation "
                          @"identifier\" field to the Korvo reference. Then re-insert this "
                          @"reference into the Mellel document."];
  append(summary, [NSString stringWithFormat:@"\n\n%@\n", notes],
         [[KorvoMellelAgent adapter] notesTextAttributes]);
}

- (NSString *)scrubVerified:(NSString *)groupString {
  const std::u16string text = codeUnits(groupString);
  const std::u16string_view rest = formats::withoutVerifiedMarkers(text);
  return rest.size() == text.size() ? groupString : stringWithCodeUnits(rest);
}

- (NSArray *)citationGroupStringsWithGroupArray:(NSArray *)groups
                                       andStyle:(id<KorvoBibStyle>)style {
  const NSUInteger count = [groups count];
  NSMutableArray *groupStrings = [NSMutableArray arrayWithCapacity:count];
  LoopPool pool;
  for (NSUInteger index = 0; index < count; ++index) {
    NSArray *citations = [[groups objectAtIndex:index] citations];
    NSAttributedString *text = [style attributedGroupStringForCitationArray:citations];
    // The n-th text belongs to the n-th group of the document: no place may be left out.
    [groupStrings addObject:text != nil ? text : [[[NSAttributedString alloc] init] autorelease]];
    pool.endTurn();
  }
  pool.drain();
  return groupStrings;
}

@end

@implementation KorvoMellelAgent (CitationParsingSteps)

// A group without citations is a group all the same.
- (id<KorvoCitationGroup>)citationGroupWithString:(NSString *)groupString parse:(Parse &)parse {
  NSArray *citationStrings = [parse.adapter citationStringArrayForCitationGroupString:groupString];
  id<KorvoCitationGroup> group =
      required([parse.adapter createCitationGroup], @"citation group (createCitationGroup)");
  for (NSUInteger index = 0; index < [citationStrings count]; ++index) {
    id<KorvoCitation> citation = [self citationWithString:stringAt(citationStrings, index)
                                                    parse:parse];
    if (citation != nil) {
      [group addCitation:citation];
    }
  }
  return group;
}

// nil where nothing is left of the text to search for: such a citation does not count.
- (id<KorvoCitation>)citationWithString:(NSString *)citationString parse:(Parse &)parse {
  const formats::CitationText text = formats::parseCitationText(parse.codeUnitsOf(citationString));
  id<KorvoCitation> citation =
      required([parse.adapter createCitation], @"citation (createCitation)");
  BOOL found = NO;
  if (text.pageRange) {
    [citation setPageRange:stringWithCodeUnits(*text.pageRange)];
  }
  if (text.tag) {
    NSSet *matches = [parse.adapter referencesMatchingTag:stringWithCodeUnits(*text.tag)
                                                inLibrary:parse.library];
    if ([matches count] == 1) {
      [citation setReference:[matches anyObject]];
      found = YES;
    }
  }
  setOptions(citation, text);
  if (text.searchText.empty()) {
    return nil;
  }
  NSString *searchString = stringWithCodeUnits(text.searchText);
  [citation setSearchString:searchString];
  if (!found) {
    [self lookUpSearchString:searchString forCitation:citation parse:parse];
  }
  ++parse.citationNumber;
  return citation;
}

// Among several references none is picked: the notice asks the author to tell them apart.
- (void)lookUpSearchString:(NSString *)searchString
               forCitation:(id<KorvoCitation>)citation
                     parse:(Parse &)parse {
  NSSet *matches = [parse.adapter referencesMatchingTag:searchString inLibrary:parse.library];
  if ([matches count] == 1) {
    [citation setReference:[matches anyObject]];
  } else if (parse.summaryHasRoom()) {
    if ([matches count] == 0) {
      [self appendNotFoundNoticeToSummary:parse.summary
                                  atIndex:parse.citationNumber
                                   forTag:searchString];
    } else {
      [self appendDuplicateNoticeToSummary:parse.summary
                                   atIndex:parse.citationNumber
                                    forTag:searchString
                             referenceUsed:nil
                           referencesFound:matches];
    }
  }
}

@end
