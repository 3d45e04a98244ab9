#import "KORehearsal.h"

#include <algorithm>
#include <span>

namespace {

constexpr std::size_t rehearsedReferences = 4000;
constexpr std::size_t referencesOfATurn = 2;
// In seconds.
constexpr NSTimeInterval timeBefore = 0.3;
// Long enough for whatever else the run loop has to do.
constexpr NSTimeInterval timeBetween = 0.001;

}  // namespace

@interface KORehearsal (Turns)
- (void)begin;
- (void)end;
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

- (void)begin {
  style_ = shelf_->defaultStyle();
  if (style_.empty() && !shelf_->favorites().empty()) {
    style_ = shelf_->favorites().front();
  }
  version_ = [library_ library].version();
  if (auto listed = [library_ library].list({}, {})) {
    rows_ = std::move(*listed);
  }
  rows_.resize(std::min(rows_.size(), rehearsedReferences));
}

- (void)end {
  isOver_ = YES;
  shelf_->endRehearsal();
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
    [self begin];
  }
  if (style_.empty() || next_ == rows_.size() || [library_ library].version() != version_) {
    [self end];
    return;
  }
  const std::span<const korvo::library::ReferenceRow> turn =
      std::span(rows_).subspan(next_, std::min(referencesOfATurn, rows_.size() - next_));
  // A style that cannot be used may take long to say so: once is enough.
  if (!shelf_->rehearse(style_, [library_ library], turn)) {
    [self end];
    return;
  }
  next_ += turn.size();
  [self performSelector:@selector(takeTurn) withObject:nil afterDelay:timeBetween];
}

@end
