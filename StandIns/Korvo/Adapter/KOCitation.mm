#import "KOCitation.h"

#import "KOFormattedGroup.h"
#import "StringConversion.h"

@interface KOCitation (Parts)
- (korvo::adapter::CitationParts &)changedParts;
@end

@implementation KOCitation

- (void)dealloc {
  [(id)reference_ release];
  [formattedGroup_ release];
  [super dealloc];
}

- (const korvo::adapter::CitationParts &)parts {
  static const korvo::adapter::CitationParts nothingSet;
  return parts_ ? *parts_ : nothingSet;
}

- (std::shared_ptr<const korvo::adapter::CitationParts>)partsToKeep {
  return parts_;
}

// What another one has kept, or shares, stays as it is.
- (korvo::adapter::CitationParts &)changedParts {
  [self setFormattedGroup:nil];
  if (parts_ == nullptr || parts_.use_count() > 1) {
    parts_ = std::make_shared<korvo::adapter::CitationParts>([self parts]);
  }
  return *parts_;
}

- (KOCitationGroup *)group {
  return group_;
}

- (void)setGroup:(KOCitationGroup *)group {
  group_ = group;
  [self setFormattedGroup:nil];
}

- (KOCitation *)unformattedCopy {
  KOCitation *copy = [[[KOCitation alloc] init] autorelease];
  copy->reference_ = [(id)reference_ retain];
  copy->parts_ = parts_;
  return copy;
}

- (KOFormattedGroup *)formattedGroup {
  return formattedGroup_;
}

- (void)setFormattedGroup:(KOFormattedGroup *)formattedGroup {
  [formattedGroup retain];
  [formattedGroup_ release];
  formattedGroup_ = formattedGroup;
}

- (id<KorvoReference>)reference {
  return reference_;
}

- (void)setReference:(id<KorvoReference>)reference {
  [(id)reference retain];
  [(id)reference_ release];
  reference_ = reference;
  [self setFormattedGroup:nil];
}

- (void)setSearchString:(NSString *)searchString {
  [self changedParts].searchString = korvo::adapter::utf16(searchString);
}

- (void)setPageRange:(NSString *)pageRange {
  [self changedParts].pageRange = korvo::adapter::utf16(pageRange);
}

- (void)setInTextPrependString:(NSString *)text {
  [self changedParts].prependString = korvo::adapter::utf16(text);
}

- (void)setInTextAppendString:(NSString *)text {
  [self changedParts].appendString = korvo::adapter::utf16(text);
}

- (void)setIncludeInBibliography:(BOOL)include {
  [self changedParts].includeInBibliography = include != NO;
}

- (void)setIncludeInBody:(BOOL)include {
  [self changedParts].includeInBody = include != NO;
}

- (void)setStripEnclosure:(BOOL)strip {
  [self changedParts].stripEnclosure = strip != NO;
}

- (void)setSuppressSuperscript:(BOOL)suppress {
  [self changedParts].suppressSuperscript = suppress != NO;
}

- (void)setUseYearOnly:(BOOL)yearOnly {
  [self changedParts].useYearOnly = yearOnly != NO;
}

@end
