// One reference of a library: a name for it, nothing kept. What is asked of it is read from
// the library at that moment, so that an edit is seen by the next to ask.
#pragma once

#import "KOLibrary.h"

#import <HostContract/HostContract.h>

#include <expected>
#include <optional>
#include <string>

@interface KOReference : NSObject <KorvoReference> {
  KOLibrary *library_;
  korvo::library::ReferenceRow row_;
}
- (id)initWithLibrary:(KOLibrary *)holder row:(korvo::library::ReferenceRow)row;

- (KOLibrary *)library;
- (korvo::library::ReferenceRow)row;

// Nothing when the reference is gone; an error when the library cannot be read.
- (std::expected<std::optional<korvo::library::ReferenceSummary>, korvo::library::LibraryError>)
    summary;
- (std::expected<std::optional<std::string>, korvo::library::LibraryError>)cslJson;
- (std::expected<std::optional<std::string>, korvo::library::LibraryError>)citationTag;
@end
