#import "KOReference.h"

#import "StringConversion.h"

@implementation KOReference

- (id)initWithLibrary:(KOLibrary *)holder row:(korvo::library::ReferenceRow)row {
  self = [super init];
  if (self != nil) {
    library_ = [holder retain];
    row_ = row;
  }
  return self;
}

- (void)dealloc {
  [library_ release];
  [super dealloc];
}

- (KOLibrary *)library {
  return library_;
}

- (korvo::library::ReferenceRow)row {
  return row_;
}

- (std::expected<std::optional<korvo::library::ReferenceSummary>, korvo::library::LibraryError>)
    summary {
  return [library_ libraryOfThisTurn].summary(row_);
}

- (std::expected<std::optional<std::string>, korvo::library::LibraryError>)cslJson {
  return [library_ libraryOfThisTurn].cslJson(row_);
}

- (std::expected<std::optional<std::string>, korvo::library::LibraryError>)citationTag {
  return [library_ libraryOfThisTurn].citationTag(row_);
}

- (NSString *)UUID {
  const auto summary = [self summary];
  return summary && *summary ? korvo::adapter::stringFromUTF8((*summary)->uuid) : @"";
}

// Every look-up makes its own object: what they name makes them equal.
- (BOOL)isEqual:(id)other {
  if (![other isKindOfClass:[KOReference class]]) {
    return NO;
  }
  return library_ == [(KOReference *)other library] && row_ == [(KOReference *)other row];
}

- (NSUInteger)hash {
  return static_cast<NSUInteger>(row_);
}

@end
