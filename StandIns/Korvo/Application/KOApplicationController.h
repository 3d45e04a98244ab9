// Connects libraries, windows and the adapter: what happens when the user, or a plug-in in the
// user's name, asks for something.
#pragma once

#import <StandIns/Korvo/Adapter/KOAdapter.h>
#import <StandIns/Korvo/Adapter/StyleShelf.h>
#import <StandIns/Korvo/Windows/KOMainWindowController.h>
#import <StandIns/Korvo/Windows/KONoticeWindowController.h>
#import <StandIns/Korvo/Windows/KOReferenceEditorWindowController.h>
#import <StandIns/Korvo/Windows/KOStylePickerWindowController.h>

#import <Cocoa/Cocoa.h>

@interface KOApplicationController
    : NSObject <KOUserInterface, KOMainWindowDelegate, KOReferenceEditorDelegate> {
  korvo::adapter::StyleShelf *shelf_;  // not owned
  KOAdapter *adapter_;
  KOMainWindowController *mainWindow_;
  KONoticeWindowController *noticeWindow_;
  KOStylePickerWindowController *styleWindow_;  // made when first asked for
  NSMutableArray *editors_;                     // the open ones
  NSPoint lastEditor_;                          // the upper left corner of the one opened last
}
// `libraries` is an NSArray of KOLibrary. Makes the windows, shows nothing.
- (id)initWithLibraries:(NSArray *)libraries styles:(korvo::adapter::StyleShelf &)shelf;

- (KOAdapter *)adapter;
- (KOMainWindowController *)mainWindow;
- (KONoticeWindowController *)noticeWindow;
// NSArray of KOReferenceEditorWindowController: the open editors.
- (NSArray *)editors;

// Where the windows are: what moved last may not be in the user's defaults yet.
- (void)savePlaces;
- (void)showLibrary:(id)sender;
- (void)showNotices:(id)sender;
- (void)showStyles:(id)sender;
- (void)editSelection:(id)sender;
// Another program wants this one in front.
- (void)comeToFront;
@end
