#import "KORehearsal.h"

#include <algorithm>
#include <span>

namespace {

constexpr std::size_t rehearsedReferences = 4000;
constexpr std::size_t rehearsedStyles = 3;
constexpr std::size_t referencesOfATurn = 10;
// In seconds.
constexpr NSTimeInterval timeBefore = 1;
constexpr NSTimeInterval timeBetween = 0.05;

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
  styles_ = {shelf_->defaultStyle()};
  for (const std::string &favorite : shelf_->favorites()) {
    if (favorite != styles_.front() && styles_.size() < rehearsedStyles) {
      styles_.push_back(favorite);
    }
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
  if (styles_.empty()) {
    [self begin];
  }
  if (rows_.empty() || style_ == styles_.size() || [library_ library].version() != version_) {
    [self end];
    return;
  }
  const std::span<const korvo::library::ReferenceRow> turn =
      std::span(rows_).subspan(next_, std::min(referencesOfATurn, rows_.size() - next_));
  shelf_->rehearse(styles_[style_], [library_ library], turn);
  next_ += turn.size();
  if (next_ == rows_.size()) {
    next_ = 0;
    ++style_;
  }
  [self performSelector:@selector(takeTurn) withObject:nil afterDelay:timeBetween];
}

@end
