#import "KOLibrary.h"

#import "KOReference.h"
#import "StringConversion.h"

#include <Platform/RunLoopTimer.h>

#include <utility>

@implementation KOLibrary

- (id)initWithLibrary:(korvo::library::Library)opened {
  self = [super init];
  if (self != nil) {
    library_ = std::move(opened);
  }
  return self;
}

- (korvo::library::Library &)library {
  return *library_;
}

- (void)endTurn {
  library_->stopReading();
}

- (void)turnIsOver {
  endsTurn_ = NO;
  lastTurn_ = std::chrono::steady_clock::now();
  [self endTurn];
}

- (korvo::library::Library &)libraryOfThisTurn {
  if (endOfTurn_ == nullptr) {
    endOfTurn_ = std::make_unique<platform::RunLoopTimer>([self] { [self turnIsOver]; });
  }
  if (!endOfTurn_->isUsable()) {
    // Nothing would end the turn: each question reads the file for itself.
    return *library_;
  }
  if (!endsTurn_) {
    endsTurn_ = YES;
    endOfTurn_->callAfter(std::chrono::microseconds(0));
  }
  library_->keepReading();
  return *library_;
}

- (NSTimeInterval)timeSinceLastTurn {
  if (endsTurn_) {
    return 0;
  }
  return std::chrono::duration<NSTimeInterval>(std::chrono::steady_clock::now() - lastTurn_)
      .count();
}

- (NSString *)name {
  return korvo::adapter::stringFromUTF8(library_->name().filename().string());
}

- (KOReference *)referenceAtRow:(korvo::library::ReferenceRow)row {
  return [[[KOReference alloc] initWithLibrary:self row:row] autorelease];
}

@end
