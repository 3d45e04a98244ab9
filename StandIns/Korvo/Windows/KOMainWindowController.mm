// Only the numbers of the rows are held, some bytes a reference; what a row shows is read when
// it scrolls into view. So a library of 100,000 references opens like one of ten.
#import "KOMainWindowController.h"

#import "Controls.h"
#import "TitleText.h"

#import <StandIns/Korvo/Adapter/StringConversion.h>
#include <StandIns/Korvo/Library/EditableFields.h>

#include <algorithm>
#include <iterator>
#include <utility>

namespace {

using korvo::library::ListOrder;
using korvo::library::ReferenceRow;
using korvo::library::SortColumn;

// In seconds.
constexpr NSTimeInterval timeBetweenLooks = 2;

// More than this many windows at once nobody has asked for.
constexpr NSUInteger mostOpenedAtOnce = 12;

struct ShownColumn {
  korvo::windows::Column column;
  SortColumn sort;
  std::string korvo::library::ReferenceSummary::*text;
};

const ShownColumn shownColumns[] = {
    {{@"authors", @"Authors", 220, true},
     SortColumn::authors,
     &korvo::library::ReferenceSummary::authors},
    {{@"year", @"Year", 56, false}, SortColumn::year, &korvo::library::ReferenceSummary::year},
    {{@"title", @"Title", 340, true}, SortColumn::title, &korvo::library::ReferenceSummary::title},
    {{@"kind", @"Kind", 120, false}, SortColumn::kind, &korvo::library::ReferenceSummary::kind},
    {{@"identifier", @"Identifier", 130, false},
     SortColumn::identifier,
     &korvo::library::ReferenceSummary::identifier},
};

const ShownColumn *shownColumn(NSTableColumn *column) {
  const auto *found = std::ranges::find_if(shownColumns, [&](const ShownColumn &shown) {
    return [shown.column.identifier isEqual:[column identifier]] != NO;
  });
  return found == std::end(shownColumns) ? nullptr : found;
}

NSString *plural(NSUInteger count, NSString *noun) {
  return [NSString stringWithFormat:@"%lu %@%@", static_cast<unsigned long>(count), noun,
                                    count == 1 ? @"" : @"s"];
}

}  // namespace

@interface KOMainWindowController (Building)
- (void)buildInView:(NSView *)content;
- (void)showStatus;
- (void)showSortIndicator;
@end

@implementation KOMainWindowController

- (id)initWithLibraries:(NSArray *)libraries delegate:(id<KOMainWindowDelegate>)delegate {
  NSWindow *window =
      korvo::windows::makeWindow(@"Korvo", NSMakeSize(940, 540), NSMakeSize(640, 260));
  self = [super initWithWindow:window];
  if (self != nil) {
    delegate_ = delegate;
    libraries_ = [libraries copy];
    [self buildInView:[window contentView]];
    [window setDelegate:(id)self];
    [self setCurrentLibrary:[libraries_ count] > 0 ? [libraries_ objectAtIndex:0] : nil];
  }
  return self;
}

- (void)dealloc {
  [table_ setDataSource:nil];
  [table_ setDelegate:nil];
  [searchField_ setDelegate:nil];
  [[self window] setDelegate:nil];
  [libraries_ release];
  [super dealloc];
}

- (void)buildInView:(NSView *)content {
  using namespace korvo::windows;
  const NSSize size = [content frame].size;
  const CGFloat top = size.height - margin - controlHeight;

  libraryButton_ =
      makePopUpButton(NSMakeRect(margin, top, 280, controlHeight), self, @selector(libraryChosen:));
  for (NSUInteger index = 0; index < [libraries_ count]; ++index) {
    // Two files may bear one name: the items are told apart by their place.
    [libraryButton_ addItemWithTitle:@""];
    [[libraryButton_ lastItem] setTitle:[(KOLibrary *)[libraries_ objectAtIndex:index] name]];
  }
  add(content, libraryButton_, NSViewMaxXMargin | NSViewMinYMargin);

  searchField_ = makeSearchField(
      @"Search", NSMakeRect(size.width - margin - 260, top, 260, controlHeight), self);
  [searchField_ setTarget:self];
  [searchField_ setAction:@selector(searchChanged:)];
  add(content, searchField_, NSViewMinXMargin | NSViewMinYMargin);

  const CGFloat bottom = margin + controlHeight;
  Column columns[std::size(shownColumns)];
  std::ranges::transform(shownColumns, columns, &ShownColumn::column);
  NSScrollView *area =
      makeTable(NSMakeRect(margin, bottom, size.width - 2 * margin, top - gap - bottom), columns,
                std::size(columns), self);
  table_ = tableOf(area);
  [table_ setAllowsMultipleSelection:YES];
  [table_ setTarget:self];
  [table_ setDoubleAction:@selector(editSelectedReferences:)];
  add(content, area, NSViewWidthSizable | NSViewHeightSizable);

  statusLabel_ =
      makeLabel(@"", NSMakeRect(margin, gap, size.width - 2 * margin, 20), NSLeftTextAlignment);
  add(content, statusLabel_, NSViewWidthSizable | NSViewMaxYMargin);
}

- (KOLibrary *)currentLibrary {
  return currentLibrary_;
}

- (void)setCurrentLibrary:(KOLibrary *)library {
  currentLibrary_ = library;
  const NSUInteger index = [libraries_ indexOfObjectIdenticalTo:library];
  if (index != NSNotFound) {
    [libraryButton_ selectItemAtIndex:static_cast<NSInteger>(index)];
  }
  [[self window] setTitle:library == nil
                              ? @"Korvo"
                              : [NSString stringWithFormat:@"Korvo – %@", [library name]]];
  [table_ deselectAll:nil];
  [self reload];
}

- (void)libraryChosen:(id)sender {
  (void)sender;
  const NSInteger index = [libraryButton_ indexOfSelectedItem];
  if (index >= 0) {
    [self setCurrentLibrary:[libraries_ objectAtIndex:static_cast<NSUInteger>(index)]];
  }
}

- (NSArray *)selectedReferences {
  NSMutableArray *references = [NSMutableArray array];
  NSIndexSet *selected = [table_ selectedRowIndexes];
  for (NSUInteger index = [selected firstIndex]; index != NSNotFound;
       index = [selected indexGreaterThanIndex:index]) {
    if (index < rows_.size()) {
      [references addObject:[currentLibrary_ referenceAtRow:rows_[index]]];
    }
  }
  return references;
}

- (void)selectReferences:(NSArray *)references {
  std::vector<ReferenceRow> wanted;
  for (NSUInteger index = 0; index < [references count]; ++index) {
    KOReference *reference = [references objectAtIndex:index];
    if ([reference library] == currentLibrary_) {
      wanted.push_back([reference row]);
    }
  }
  std::ranges::sort(wanted);
  NSMutableIndexSet *indexes = [NSMutableIndexSet indexSet];
  for (std::size_t index = 0; index < rows_.size(); ++index) {
    if (std::ranges::binary_search(wanted, rows_[index])) {
      [indexes addIndex:index];
    }
  }
  [table_ selectRowIndexes:indexes byExtendingSelection:NO];
  if ([indexes count] > 0) {
    [table_ scrollRowToVisible:static_cast<NSInteger>([indexes firstIndex])];
  }
  [self showStatus];
}

- (void)reload {
  NSArray *selected = [self selectedReferences];
  rows_.clear();
  if (currentLibrary_ != nil) {
    korvo::library::Library &library = [currentLibrary_ library];
    library.keepReading();
    listed_ = library.version();
    auto listed = library.list(order_, korvo::adapter::utf8([searchField_ stringValue]));
    library.stopReading();
    if (listed) {
      rows_ = *std::move(listed);
    } else {
      [delegate_ reportProblem:korvo::adapter::stringFromUTF8(listed.error())];
    }
  }
  [table_ reloadData];
  [self showSortIndicator];
  [self selectReferences:selected];
}

- (void)followLibrary {
  if (currentLibrary_ == nil) {
    return;
  }
  korvo::library::Library &library = [currentLibrary_ library];
  library.keepReading();
  const auto version = library.version();
  library.stopReading();
  // Nothing while another program writes: then the next look tells.
  if (version && version != listed_) {
    [self reload];
  }
}

- (void)startFollowing {
  [self followLibrary];
  [self performSelector:@selector(startFollowing) withObject:nil afterDelay:timeBetweenLooks];
}

- (void)stopFollowing {
  [NSObject cancelPreviousPerformRequestsWithTarget:self];
}

- (void)sortBy:(ListOrder)order {
  order_ = order;
  [self reload];
}

- (void)searchFor:(NSString *)text {
  [searchField_ setStringValue:text];
  [self reload];
}

- (void)searchChanged:(id)sender {
  (void)sender;
  [self reload];
}

- (void)controlTextDidChange:(NSNotification *)notification {
  (void)notification;
  [self reload];
}

- (void)editSelectedReferences:(id)sender {
  // A double click on a column's title is no click on a reference.
  if (sender == table_ && [table_ clickedRow] < 0) {
    return;
  }
  NSArray *selected = [self selectedReferences];
  const NSUInteger count = std::min([selected count], mostOpenedAtOnce);
  for (NSUInteger index = 0; index < count; ++index) {
    [delegate_ editReference:[selected objectAtIndex:index]];
  }
  if (count < [selected count]) {
    [statusLabel_
        setStringValue:[NSString stringWithFormat:@"Opened the first %lu of %lu",
                                                  static_cast<unsigned long>(count),
                                                  static_cast<unsigned long>([selected count])]];
  }
}

- (void)showStatus {
  NSString *shown = plural(rows_.size(), @"reference");
  const NSUInteger selected = [[table_ selectedRowIndexes] count];
  [statusLabel_
      setStringValue:selected == 0
                         ? shown
                         : [NSString stringWithFormat:@"%@, %lu selected", shown,
                                                      static_cast<unsigned long>(selected)]];
}

// An arrow in the title: images beside it are not to be had on every platform.
- (void)showSortIndicator {
  for (const ShownColumn &shown : shownColumns) {
    NSTableColumn *column = [table_ tableColumnWithIdentifier:shown.column.identifier];
    const bool sorts = shown.sort == order_.column;
    NSString *arrow = order_.ascending ? @" ▴" : @" ▾";
    [[column headerCell] setStringValue:sorts ? [shown.column.title stringByAppendingString:arrow]
                                              : shown.column.title];
  }
  [[table_ headerView] setNeedsDisplay:YES];
}

- (NSTableView *)table {
  return table_;
}

- (NSString *)statusText {
  return [statusLabel_ stringValue];
}

// The table's data source and delegate

- (NSInteger)numberOfRowsInTableView:(NSTableView *)table {
  (void)table;
  return static_cast<NSInteger>(rows_.size());
}

- (id)tableView:(NSTableView *)table
    objectValueForTableColumn:(NSTableColumn *)column
                          row:(NSInteger)index {
  (void)table;
  const ShownColumn *shown = shownColumn(column);
  if (shown == nullptr || index < 0 || static_cast<std::size_t>(index) >= rows_.size()) {
    return @"";
  }
  const auto summary = [currentLibrary_ library].summary(rows_[static_cast<std::size_t>(index)]);
  if (!summary || !*summary) {
    return @"";
  }
  const std::string &text = (**summary).*(shown->text);
  if (shown->sort == SortColumn::kind) {
    return korvo::adapter::stringFromUTF8(korvo::library::nameOfKind(text));
  }
  return korvo::windows::titleText(korvo::adapter::stringFromUTF8(text), [[column dataCell] font]);
}

- (void)tableView:(NSTableView *)table didClickTableColumn:(NSTableColumn *)column {
  (void)table;
  const ShownColumn *shown = shownColumn(column);
  if (shown == nullptr) {
    return;
  }
  const bool turns = shown->sort == order_.column;
  [self sortBy:ListOrder{.column = shown->sort, .ascending = !turns || !order_.ascending}];
}

- (void)tableViewSelectionDidChange:(NSNotification *)notification {
  (void)notification;
  [self showStatus];
}

@end
