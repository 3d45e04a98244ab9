#import "KOCitation.h"

#import "KOFormattedGroup.h"
#import "StringConversion.h"

@implementation KOCitation

- (void)dealloc {
  [(id)reference_ release];
  [formattedGroup_ release];
  [super dealloc];
}

- (const korvo::adapter::CitationParts &)parts {
  return parts_;
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
  parts_.searchString = korvo::adapter::utf16(searchString);
  [self setFormattedGroup:nil];
}

- (void)setPageRange:(NSString *)pageRange {
  parts_.pageRange = korvo::adapter::utf16(pageRange);
  [self setFormattedGroup:nil];
}

- (void)setInTextPrependString:(NSString *)text {
  parts_.prependString = korvo::adapter::utf16(text);
  [self setFormattedGroup:nil];
}

- (void)setInTextAppendString:(NSString *)text {
  parts_.appendString = korvo::adapter::utf16(text);
  [self setFormattedGroup:nil];
}

- (void)setIncludeInBibliography:(BOOL)include {
  parts_.includeInBibliography = include != NO;
  [self setFormattedGroup:nil];
}

- (void)setIncludeInBody:(BOOL)include {
  parts_.includeInBody = include != NO;
  [self setFormattedGroup:nil];
}

- (void)setStripEnclosure:(BOOL)strip {
  parts_.stripEnclosure = strip != NO;
  [self setFormattedGroup:nil];
}

- (void)setSuppressSuperscript:(BOOL)suppress {
  parts_.suppressSuperscript = suppress != NO;
  [self setFormattedGroup:nil];
}

- (void)setUseYearOnly:(BOOL)yearOnly {
  parts_.useYearOnly = yearOnly != NO;
  [self setFormattedGroup:nil];
}

@end
