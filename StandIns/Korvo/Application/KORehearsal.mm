#import "KORehearsal.h"

#include <Platform/RunLoopTimer.h>

#include <algorithm>
#include <span>

using namespace std::chrono_literals;

namespace {

constexpr std::size_t rehearsedReferences = 4000;
constexpr std::size_t referencesOfATurn = 2;
constexpr auto timeBefore = 300ms;
// Long enough for whatever else the run loop has to do.
constexpr auto timeBetween = 1ms;

}  // namespace

@interface KORehearsal (Turns)
- (void)begin;
- (void)end;
- (void)takeTurn;
- (void)takeTurnAfter:(std::chrono::microseconds)time;
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
  [self takeTurnAfter:timeBefore];
}

// Also while a dialog is open.
- (void)takeTurnAfter:(std::chrono::microseconds)time {
  if (nextTurn_ == nullptr) {
    nextTurn_ = std::make_unique<platform::RunLoopTimer>([self] { [self takeTurn]; });
  }
  nextTurn_->callAfter(time);
}

- (void)stop {
  nextTurn_.reset();
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
  const auto wait = timeBefore - [library_ timeSinceLastTurn];
  if (wait > 0s) {
    [self takeTurnAfter:wait];
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
  [self takeTurnAfter:timeBetween];
}

@end
