#import "KOBibStyle.h"

#import "AttributedCitations.h"
#import "CitedDocument.h"
#import "KOCitation.h"
#import "KOCitationGroup.h"
#import "KOFormattedGroup.h"
#import "Owned.h"
#import "StringConversion.h"

#include <algorithm>
#include <span>
#include <utility>
#include <vector>

using korvo::adapter::Owned;

@interface KOBibStyle (Formatting)
- (KOFormattedDocument *)formatDocument:(const korvo::adapter::Citations &)citations;
- (KOFormattedDocument *)documentOfCitations:(const korvo::adapter::Citations &)citations;
@end

@implementation KOBibStyle

- (id)initWithStyle:(korvo::engine::Style)described
          formatter:(std::shared_ptr<korvo::adapter::DocumentFormatter>)formatter
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
  return korvo::adapter::stringFromUTF8(style_.name.title);
}

- (bool)rehearse:(std::span<const std::string>)items {
  return formatter_->processor().rehearse(style_, items).has_value();
}

- (BOOL)useSuperscriptInInTextCitations {
  return style_.usesSuperscript ? YES : NO;
}

- (void)setPropertiesInCitationArray:(NSArray *)citations {
  (void)[self formatDocument:korvo::adapter::citationsIn(citations)];
}

- (NSAttributedString *)attributedBibliographyStringForCitationArray:(NSArray *)citations
                                                          attributes:(NSMutableDictionary *)
                                                                         documentAttributes {
  (void)documentAttributes;  // the document's margins stay the word processor's affair
  const korvo::adapter::Citations own = korvo::adapter::citationsIn(citations);
  KOFormattedDocument *document = [self documentOfCitations:own];
  if (document == nil) {
    document = [self formatDocument:own];
  }
  return [document bibliography];
}

- (NSAttributedString *)attributedGroupStringForCitationArray:(NSArray *)citations {
  const korvo::adapter::Citations own = korvo::adapter::citationsIn(citations);
  if (own.empty()) {
    return korvo::adapter::plainAttributedText(@"");
  }
  KOFormattedGroup *group = [own.front() formattedGroup];
  const bool isFormatted =
      group != nil && [[group document] style] == self && [group citationCount] == own.size() &&
      std::ranges::all_of(
          own, [group](KOCitation *citation) { return [citation formattedGroup] == group; });
  if (isFormatted) {
    return [group text];
  }

  // Asked for by itself, the array is one group, whatever its citations belong to.
  KOCitationGroup *alone = [[[KOCitationGroup alloc] init] autorelease];
  for (KOCitation *original : own) {
    [alone addCitation:[original unformattedCopy]];
  }
  const korvo::adapter::Citations copies = korvo::adapter::citationsIn([alone citations]);
  (void)[self formatDocument:copies];
  return [[copies.front() formattedGroup] text];
}

// What all of the citations, and no others, were last formatted as in this style; nil when
// there is no such document.
- (KOFormattedDocument *)documentOfCitations:(const korvo::adapter::Citations &)citations {
  if (citations.empty()) {
    return nil;
  }
  KOFormattedDocument *document = [[citations.front() formattedGroup] document];
  if ([document style] != self || [document citationCount] != citations.size()) {
    return nil;
  }
  for (KOCitation *citation : citations) {
    if ([[citation formattedGroup] document] != document) {
      return nil;
    }
  }
  return document;
}

- (KOFormattedDocument *)formatDocument:(const korvo::adapter::Citations &)citations {
  const std::vector<korvo::adapter::CitedGroup> groups = korvo::adapter::groupsOf(citations);
  const auto texts = formatter_->format(style_, citations, groups);
  if (!texts) {
    [reporter_ reportProblem:korvo::adapter::stringFromUTF8(texts.error())];
  }

  KOFormattedDocument *document = [[[KOFormattedDocument alloc]
      initWithStyle:self
       bibliography:texts ? (*texts)->bibliography.get() : korvo::adapter::plainAttributedText(@"")
      citationCount:citations.size()] autorelease];
  static const Class groupClass = [KOFormattedGroup class];
  for (std::size_t index = 0; index < groups.size(); ++index) {
    const auto cited = std::span(citations).subspan(groups[index].first, groups[index].count);
    const auto group = Owned<KOFormattedGroup *>::taking([[groupClass alloc]
        initWithDocument:document
                    text:texts ? (*texts)->groups[index].get() : korvo::adapter::writtenGroup(cited)
           citationCount:cited.size()]);
    for (KOCitation *citation : cited) {
      [citation setFormattedGroup:group.get()];
    }
  }
  return document;
}

@end
