#import "KOLibrary.h"

#import "KOReference.h"
#import "StringConversion.h"

#import <AppKit/AppKit.h>

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

- (korvo::library::Library &)libraryOfThisTurn {
  if (!endsTurn_) {
    endsTurn_ = YES;
    NSArray *modes = [NSArray arrayWithObjects:NSDefaultRunLoopMode, NSModalPanelRunLoopMode,
                                               NSEventTrackingRunLoopMode, nil];
    [self performSelector:@selector(turnIsOver) withObject:nil afterDelay:0 inModes:modes];
  }
  library_->keepReading();
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
