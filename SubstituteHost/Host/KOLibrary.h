// A library of references as the plug-in and the windows hold it.
#pragma once

#import <HostContract/HostContract.h>

#include <optional>

#include <SubstituteHostLibrary/Library.h>

@class KOReference;

@interface KOLibrary : NSObject <KorvoLibrary> {
  std::optional<library::Library> library_;  // filled by init
  BOOL endsTurn_;
}
- (id)initWithLibrary:(library::Library)opened;

- (library::Library &)library;
// The same for the thousands of small questions of one event: until the run loop turns, or until
// -endTurn, they are answered from one state of the file.
- (library::Library &)libraryOfThisTurn;
- (void)endTurn;
// The file's name for people, without its folder.
- (NSString *)name;
- (KOReference *)referenceAtRow:(library::ReferenceRow)row;
@end
