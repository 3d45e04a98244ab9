// One cited reference with what its citation in the text asks for.
#pragma once

#include "WrittenCitation.h"

#import <HostContract/HostContract.h>

#include <memory>

@class KOCitationGroup;
@class KOFormattedGroup;

@interface KOCitation : NSObject <KorvoCitation> {
  id<KorvoReference> reference_;
  std::shared_ptr<korvo::adapter::CitationParts> parts_;  // null: nothing was set
  KOCitationGroup *group_;  // not retained: the group retains its citations
  KOFormattedGroup *formattedGroup_;
}
- (const korvo::adapter::CitationParts &)parts;
// The same, to be kept: they do not change. Null where nothing was set.
- (std::shared_ptr<const korvo::adapter::CitationParts>)partsToKeep;

// The group that the citation was added to last; nil while it is in none.
- (KOCitationGroup *)group;
- (void)setGroup:(KOCitationGroup *)group;

// Another citation that asks for the same; in no group. Autoreleased.
- (KOCitation *)unformattedCopy;

// What a style made of the citation together with its neighbours; nil before, and again
// after any change to the citation.
- (KOFormattedGroup *)formattedGroup;
- (void)setFormattedGroup:(KOFormattedGroup *)formattedGroup;
@end
