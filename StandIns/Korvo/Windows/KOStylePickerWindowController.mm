#import "KOStylePickerWindowController.h"

#import "Controls.h"

#import <StandIns/Korvo/Adapter/StringConversion.h>
#include <StandIns/Korvo/Library/FoldedText.h>

#include <algorithm>
#include <iterator>
#include <string>
#include <utility>

@interface KOStylePickerWindowController (Building)
- (void)buildInView:(NSView *)content;
- (void)showFavorites;
- (void)moveFavoriteBy:(NSInteger)distance;
@end

@implementation KOStylePickerWindowController

- (id)initWithStyles:(korvo::adapter::StyleShelf &)shelf {
  NSWindow *window =
      korvo::windows::makeWindow(@"Citation Styles", NSMakeSize(860, 460), NSMakeSize(640, 300));
  self = [super initWithWindow:window];
  if (self != nil) {
    shelf_ = &shelf;
    [self buildInView:[window contentView]];
    [self searchFor:@""];
    [self showFavorites];
  }
  return self;
}

- (void)dealloc {
  NSTableView *const tables[] = {allTable_, favoritesTable_};
  for (NSTableView *table : tables) {
    [table setDataSource:nil];
    [table setDelegate:nil];
  }
  [searchField_ setDelegate:nil];
  [super dealloc];
}

- (void)buildInView:(NSView *)content {
  using namespace korvo::windows;
  const NSSize size = [content frame].size;
  const CGFloat buttonWidth = 116;
  const CGFloat listWidth = (size.width - 2 * margin - 2 * gap - buttonWidth) / 2;
  const CGFloat middle = margin + listWidth + gap;
  const CGFloat right = middle + buttonWidth + gap;
  const CGFloat bottom = margin + controlHeight + gap;
  const CGFloat top = size.height - margin - controlHeight;

  searchField_ = makeSearchField(@"Search all styles",
                                 NSMakeRect(margin, top, listWidth, controlHeight), self);
  [searchField_ setTarget:self];
  [searchField_ setAction:@selector(searchChanged:)];
  add(content, searchField_, NSViewWidthSizable | NSViewMinYMargin);
  add(content,
      makeLabel(@"Favorites, in the order of menus", NSMakeRect(right, top, listWidth, 20),
                NSLeftTextAlignment),
      NSViewMinXMargin | NSViewMinYMargin);

  const Column all = {@"title", @"All installed styles", listWidth, true};
  NSScrollView *allArea =
      makeTable(NSMakeRect(margin, bottom, listWidth, top - gap - bottom), &all, 1, self);
  allTable_ = tableOf(allArea);
  [allTable_ setAllowsMultipleSelection:YES];
  [allTable_ setTarget:self];
  [allTable_ setDoubleAction:@selector(addFavorites:)];
  add(content, allArea, NSViewWidthSizable | NSViewHeightSizable);

  const Column favorites = {@"title", @"Favorites", listWidth, true};
  NSScrollView *favoritesArea =
      makeTable(NSMakeRect(right, bottom, listWidth, top - gap - bottom), &favorites, 1, self);
  favoritesTable_ = tableOf(favoritesArea);
  add(content, favoritesArea, NSViewMinXMargin | NSViewHeightSizable);

  const std::pair<NSString *, SEL> buttons[] = {
      {@"Add", @selector(addFavorites:)},         {@"Remove", @selector(removeFavorites:)},
      {@"Move Up", @selector(moveFavoriteUp:)},   {@"Move Down", @selector(moveFavoriteDown:)},
      {@"Make Default", @selector(makeDefault:)},
  };
  CGFloat y = top - gap - 2 * controlHeight;
  for (const auto &[title, action] : buttons) {
    add(content, makeButton(title, NSMakeRect(middle, y, buttonWidth, controlHeight), self, action),
        NSViewMinXMargin | NSViewMinYMargin);
    y -= controlHeight + gap;
  }

  defaultLabel_ =
      makeLabel(@"", NSMakeRect(margin, margin, size.width - 2 * margin, 20), NSLeftTextAlignment);
  add(content, defaultLabel_, NSViewWidthSizable | NSViewMaxYMargin);
}

- (void)searchFor:(NSString *)text {
  const std::string searched = korvo::library::foldedText(korvo::adapter::utf8(text));
  const std::vector<korvo::engine::StyleName> &all = shelf_->catalog().all();
  shown_.clear();
  for (std::size_t index = 0; index < all.size(); ++index) {
    if (searched.empty() || all[index].baseName.contains(searched) ||
        korvo::library::foldedText(all[index].title).contains(searched)) {
      shown_.push_back(index);
    }
  }
  [allTable_ deselectAll:nil];
  [allTable_ reloadData];
}

- (void)searchChanged:(id)sender {
  (void)sender;
  [self searchFor:[searchField_ stringValue]];
}

- (void)controlTextDidChange:(NSNotification *)notification {
  (void)notification;
  [self searchFor:[searchField_ stringValue]];
}

- (void)showFavorites {
  [favoritesTable_ reloadData];
  const std::string &chosen = shelf_->defaultStyle();
  [defaultLabel_
      setStringValue:[NSString stringWithFormat:@"Default style: %@",
                                                chosen.empty()
                                                    ? @"none"
                                                    : korvo::adapter::stringFromUTF8(chosen)]];
}

- (void)addFavorites:(id)sender {
  if (sender == allTable_ && [allTable_ clickedRow] < 0) {
    return;
  }
  const std::vector<korvo::engine::StyleName> &all = shelf_->catalog().all();
  std::vector<std::string> favorites = shelf_->favorites();
  NSIndexSet *selected = [allTable_ selectedRowIndexes];
  for (NSUInteger index = [selected firstIndex]; index != NSNotFound;
       index = [selected indexGreaterThanIndex:index]) {
    const std::string &title = all[shown_[index]].title;
    if (std::ranges::find(favorites, title) == favorites.end()) {
      favorites.push_back(title);
    }
  }
  shelf_->rememberFavorites(std::move(favorites));
  [self showFavorites];
}

- (void)removeFavorites:(id)sender {
  (void)sender;
  const NSInteger row = [favoritesTable_ selectedRow];
  std::vector<std::string> favorites = shelf_->favorites();
  if (row < 0 || static_cast<std::size_t>(row) >= favorites.size()) {
    return;
  }
  favorites.erase(favorites.begin() + row);
  shelf_->rememberFavorites(std::move(favorites));
  [favoritesTable_ deselectAll:nil];
  [self showFavorites];
}

- (void)moveFavoriteUp:(id)sender {
  (void)sender;
  [self moveFavoriteBy:-1];
}

- (void)moveFavoriteDown:(id)sender {
  (void)sender;
  [self moveFavoriteBy:1];
}

- (void)moveFavoriteBy:(NSInteger)distance {
  const NSInteger row = [favoritesTable_ selectedRow];
  std::vector<std::string> favorites = shelf_->favorites();
  const NSInteger target = row + distance;
  const NSInteger count = static_cast<NSInteger>(favorites.size());
  if (row < 0 || row >= count || target < 0 || target >= count) {
    return;
  }
  std::swap(favorites[static_cast<std::size_t>(row)], favorites[static_cast<std::size_t>(target)]);
  shelf_->rememberFavorites(std::move(favorites));
  [self showFavorites];
  [favoritesTable_ selectRowIndexes:[NSIndexSet indexSetWithIndex:static_cast<NSUInteger>(target)]
               byExtendingSelection:NO];
}

- (void)makeDefault:(id)sender {
  (void)sender;
  // The table that the user clicked last is the one that is meant.
  const bool fromFavorites =
      [[self window] firstResponder] == favoritesTable_ || [allTable_ selectedRow] < 0;
  const NSInteger row = fromFavorites ? [favoritesTable_ selectedRow] : [allTable_ selectedRow];
  if (row < 0) {
    return;
  }
  const auto index = static_cast<std::size_t>(row);
  shelf_->rememberDefaultStyle(fromFavorites ? shelf_->favorites()[index]
                                             : shelf_->catalog().all()[shown_[index]].title);
  [self showFavorites];
}

- (NSTableView *)allTable {
  return allTable_;
}

- (NSTableView *)favoritesTable {
  return favoritesTable_;
}

- (NSString *)defaultText {
  return [defaultLabel_ stringValue];
}

// The tables' data source

- (NSInteger)numberOfRowsInTableView:(NSTableView *)table {
  return static_cast<NSInteger>(table == allTable_ ? shown_.size() : shelf_->favorites().size());
}

- (id)tableView:(NSTableView *)table
    objectValueForTableColumn:(NSTableColumn *)column
                          row:(NSInteger)row {
  (void)column;
  const auto index = static_cast<std::size_t>(row);
  if (table == allTable_) {
    return index < shown_.size()
               ? korvo::adapter::stringFromUTF8(shelf_->catalog().all()[shown_[index]].title)
               : @"";
  }
  return index < shelf_->favorites().size()
             ? korvo::adapter::stringFromUTF8(shelf_->favorites()[index])
             : @"";
}

@end
