// The library window: the references of the current library, to be sorted, searched and
// selected.
#pragma once

#import <StandIns/Korvo/Adapter/KOLibrary.h>
#import <StandIns/Korvo/Adapter/KOProblemReporter.h>
#import <StandIns/Korvo/Adapter/KOReference.h>

#import <Cocoa/Cocoa.h>

#include <optional>
#include <vector>

@protocol KOMainWindowDelegate <KOProblemReporter>
- (void)editReference:(KOReference *)reference;
@end

@interface KOMainWindowController : NSWindowController {
  id<KOMainWindowDelegate> delegate_;  // not retained
  NSArray *libraries_;
  KOLibrary *currentLibrary_;  // one of libraries_
  korvo::library::ListOrder order_;
  std::vector<korvo::library::ReferenceRow> rows_;          // as shown
  std::optional<korvo::library::Library::Version> listed_;  // the state of the library in the list
  NSPopUpButton *libraryButton_;
  NSSearchField *searchField_;
  NSTableView *table_;
  NSTextField *statusLabel_;
}
// `libraries` is an NSArray of KOLibrary; the first is the current one.
- (id)initWithLibraries:(NSArray *)libraries delegate:(id<KOMainWindowDelegate>)delegate;

// nil when there is no library.
- (KOLibrary *)currentLibrary;
- (void)setCurrentLibrary:(KOLibrary *)library;

// NSArray of KOReference, in the order shown. A search that hides a reference deselects it.
- (NSArray *)selectedReferences;
- (void)selectReferences:(NSArray *)references;

// Reads the list from the library again; the selection stays.
- (void)reload;
// Reads it again if the library has changed since: other programs may write to its file, too.
- (void)followLibrary;
// The same every few seconds while the run loop has nothing else to do, until it is told to stop.
- (void)startFollowing;
- (void)stopFollowing;
- (void)sortBy:(korvo::library::ListOrder)order;
- (void)searchFor:(NSString *)text;
- (void)editSelectedReferences:(id)sender;

- (NSTableView *)table;
- (NSString *)statusText;
@end
