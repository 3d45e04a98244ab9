#import <SubstituteHostObjects/KOBibStyle.h>

#include <algorithm>
#include <span>
#include <utility>
#include <vector>

#import <SubstituteHostObjects/AttributedCitations.h>
#import <SubstituteHostObjects/CitedDocument.h>
#import <SubstituteHostObjects/KOCitation.h>
#import <SubstituteHostObjects/KOCitationGroup.h>
#import <SubstituteHostObjects/KOFormattedGroup.h>
#import <SubstituteHostObjects/Owned.h>
#import <SubstituteHostObjects/TextBridge.h>

using host::Owned;

@interface KOBibStyle (Formatting)
- (KOFormattedDocument *)formatDocument:(const host::Citations &)citations;
- (KOFormattedDocument *)documentOfCitations:(const host::Citations &)citations;
@end

@implementation KOBibStyle

- (id)initWithStyle:(engine::Style)described
          formatter:(std::shared_ptr<host::DocumentFormatter>)formatter
           reporter:(id<KOProblemReporter>)reporter {
  self = [super init];
  if (self != nil) {
    style_ = std::move(described);
    formatter_ = std::move(formatter);
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
  (void)[self formatDocument:host::citationsIn(citations)];
}

- (NSAttributedString *)attributedBibliographyStringForCitationArray:(NSArray *)citations
                                                          attributes:(NSMutableDictionary *)
                                                                         documentAttributes {
  (void)documentAttributes;  // the document's margins stay the word processor's affair
  const host::Citations own = host::citationsIn(citations);
  KOFormattedDocument *document = [self documentOfCitations:own];
  if (document == nil) document = [self formatDocument:own];
  return [document bibliography];
}

- (NSAttributedString *)attributedGroupStringForCitationArray:(NSArray *)citations {
  const host::Citations own = host::citationsIn(citations);
  if (own.empty()) return host::plainAttributedText(@"");
  KOFormattedGroup *group = [own.front() formattedGroup];
  const bool isFormatted =
      group != nil && [[group document] style] == self && [group citationCount] == own.size() &&
      std::ranges::all_of(
          own, [group](KOCitation *citation) { return [citation formattedGroup] == group; });
  if (isFormatted) return [group text];

  // Asked for by itself, the array is one group, whatever its citations belong to.
  KOCitationGroup *alone = [[[KOCitationGroup alloc] init] autorelease];
  for (KOCitation *original : own) [alone addCitation:[original unformattedCopy]];
  const host::Citations copies = host::citationsIn([alone citations]);
  (void)[self formatDocument:copies];
  return [[copies.front() formattedGroup] text];
}

// What all of the citations, and no others, were last formatted as in this style; nil when
// there is no such document.
- (KOFormattedDocument *)documentOfCitations:(const host::Citations &)citations {
  if (citations.empty()) return nil;
  KOFormattedDocument *document = [[citations.front() formattedGroup] document];
  if ([document style] != self || [document citationCount] != citations.size()) return nil;
  for (KOCitation *citation : citations) {
    if ([[citation formattedGroup] document] != document) return nil;
  }
  return document;
}

- (KOFormattedDocument *)formatDocument:(const host::Citations &)citations {
  const std::vector<host::CitedGroup> groups = host::groupsOf(citations);
  const auto texts = formatter_->format(style_, citations, groups);
  if (!texts) [reporter_ reportProblem:host::stringFromUTF8(texts.error())];

  KOFormattedDocument *document = [[[KOFormattedDocument alloc]
      initWithStyle:self
       bibliography:texts ? (*texts)->bibliography.get() : host::plainAttributedText(@"")
      citationCount:citations.size()] autorelease];
  static const Class groupClass = [KOFormattedGroup class];
  for (std::size_t index = 0; index < groups.size(); ++index) {
    const auto cited = std::span(citations).subspan(groups[index].first, groups[index].count);
    const auto group = Owned<KOFormattedGroup *>::taking([[groupClass alloc]
        initWithDocument:document
                    text:texts ? (*texts)->groups[index].get() : host::writtenGroup(cited)
           citationCount:cited.size()]);
    for (KOCitation *citation : cited) [citation setFormattedGroup:group.get()];
  }
  return document;
}

@end
