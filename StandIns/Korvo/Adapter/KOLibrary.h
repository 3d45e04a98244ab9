// A library of references as the plug-in and the windows hold it.
#pragma once

#import <HostContract/HostContract.h>
#include <StandIns/Korvo/Library/Library.h>

#include <chrono>
#include <memory>
#include <optional>

namespace platform {
class RunLoopTimer;
}

@class KOReference;

@interface KOLibrary : NSObject <KorvoLibrary> {
  std::optional<korvo::library::Library> library_;  // filled by init
  // Made for the first turn. A pointer: GCC cannot describe an instance variable with a
  // std::function in it to the run time.
  std::unique_ptr<platform::RunLoopTimer> endOfTurn_;
  BOOL endsTurn_;
  std::chrono::steady_clock::time_point lastTurn_;
}
- (id)initWithLibrary:(korvo::library::Library)opened;

- (korvo::library::Library &)library;
// The same for the thousands of small questions of one event: until the run loop turns, or until
// -endTurn, they are answered from one state of the file.
- (korvo::library::Library &)libraryOfThisTurn;
- (void)endTurn;
// In seconds, since the last event that asked was handled; 0 while one is.
- (NSTimeInterval)timeSinceLastTurn;
// The file's name for people, without its folder.
- (NSString *)name;
- (KOReference *)referenceAtRow:(korvo::library::ReferenceRow)row;
@end
