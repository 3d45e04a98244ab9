// The style window: the favourites and the default style, picked out of all installed ones.
// Every change is remembered at once.
#pragma once

#import <StandIns/Korvo/Adapter/StyleShelf.h>

#import <Cocoa/Cocoa.h>

#include <vector>

@interface KOStylePickerWindowController : NSWindowController {
  korvo::adapter::StyleShelf *shelf_;  // not owned
  std::vector<std::size_t> shown_;     // places in the catalogue that the search leaves
  NSSearchField *searchField_;
  NSTableView *allTable_;
  NSTableView *favoritesTable_;
  NSTextField *defaultLabel_;
}
- (id)initWithStyles:(korvo::adapter::StyleShelf &)shelf;

- (void)searchFor:(NSString *)text;
// These work on the selection of the tables.
- (void)addFavorites:(id)sender;
- (void)removeFavorites:(id)sender;
- (void)moveFavoriteUp:(id)sender;
- (void)moveFavoriteDown:(id)sender;
- (void)makeDefault:(id)sender;

- (NSTableView *)allTable;
- (NSTableView *)favoritesTable;
- (NSString *)defaultText;
@end
