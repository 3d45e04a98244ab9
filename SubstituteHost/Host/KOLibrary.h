// A library of references as the plug-in and the windows hold it.
#pragma once

#import <HostContract/HostContract.h>

#include <optional>

#include <SubstituteHostLibrary/Library.h>

@class KOReference;

@interface KOLibrary : NSObject <KorvoLibrary> {
  std::optional<library::Library> library_;  // filled by init
}
- (id)initWithLibrary:(library::Library)opened;

- (library::Library &)library;
// The file's name for people, without its folder.
- (NSString *)name;
- (KOReference *)referenceAtRow:(library::ReferenceRow)row;
@end
