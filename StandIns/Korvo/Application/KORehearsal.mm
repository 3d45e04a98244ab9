#import "KORehearsal.h"

#include <algorithm>
#include <span>

namespace {

constexpr std::size_t rehearsedReferences = 400;
constexpr std::size_t referencesOfATurn = 25;
// In seconds.
constexpr NSTimeInterval timeBefore = 1;
constexpr NSTimeInterval timeBetween = 0.05;

}  // namespace

@interface KORehearsal (Turns)
- (void)takeTurn;
@end

@implementation KORehearsal

- (id)initWithLibrary:(KOLibrary *)library styles:(korvo::adapter::StyleShelf &)shelf {
  self = [super init];
  if (self != nil) {
    shelf_ = &shelf;
    library_ = [library retain];
  }
  return self;
}

- (void)dealloc {
  [library_ release];
  [super dealloc];
}

- (void)start {
  [self performSelector:@selector(takeTurn) withObject:nil afterDelay:timeBefore];
}

- (void)stop {
  [NSObject cancelPreviousPerformRequestsWithTarget:self];
}

- (BOOL)isOver {
  return isOver_;
}

// What goes wrong here is told when somebody asks for it.
- (void)takeTurn {
  // An author who scans a document will soon ask something else of it.
  const NSTimeInterval wait = timeBefore - [library_ timeSinceLastTurn];
  if (wait > 0) {
    [self performSelector:@selector(takeTurn) withObject:nil afterDelay:wait];
    return;
  }
  if (next_ == 0) {
    if (auto listed = [library_ library].list({}, {})) {
      rows_ = std::move(*listed);
    }
    rows_.resize(std::min(rows_.size(), rehearsedReferences));
  }
  const std::span<const korvo::library::ReferenceRow> turn =
      std::span(rows_).subspan(next_, std::min(referencesOfATurn, rows_.size() - next_));
  isOver_ = turn.empty();
  if (isOver_) {
    return;
  }
  shelf_->rehearse([library_ library], turn);
  next_ += turn.size();
  [self performSelector:@selector(takeTurn) withObject:nil afterDelay:timeBetween];
}

@end
