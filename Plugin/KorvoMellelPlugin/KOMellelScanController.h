// The dialog of a scan without a named style: a menu of the host's favourite styles, and the button
// that goes on. It remembers the style last chosen.
//
// The caller runs the controller's window modally, reads chosenAction and selectedBibStyle, and
// closes the window; the controller only ends the modal session.
#pragma once

#import <HostContract/HostContract.h>

#import <Cocoa/Cocoa.h>

#ifdef __cplusplus
extern "C" {
#endif

// How the dialog ended; also the code of its modal session.
extern const int32_t KOMellelScanWaitingForUser;      // -1: it has not
extern const int32_t KOMellelScanNoAction;            // 0: the user closed it
extern const int32_t KOMellelScanReformatAction;      // 1: for callers; never chosen here
extern const int32_t KOMellelScanGenerateCopyAction;  // 2: format a copy in the selected style

// User default: the name of the style last chosen.
extern NSString *const KOMellelScanLastStylePrefKey;

#ifdef __cplusplus
}
#endif

@interface KOMellelScanController : NSWindowController {
  IBOutlet NSPopUpButton *formatSelectorPopUpButton;
  IBOutlet NSButton *generateCopyWithBibInStyleButton;
  int32_t chosenAction;
  id<KorvoWordProcessorIntegrationAdapter> adapter;
  id<KorvoBibStyle> selectedBibStyle;
}

// A new controller with its window loaded. Autoreleased.
+ (KOMellelScanController *)openMellelScanControllerWithAdapter:
    (id<KorvoWordProcessorIntegrationAdapter>)adapter;

- (id)initWithAdapter:(id<KorvoWordProcessorIntegrationAdapter>)adapter;

- (IBAction)formatSelectionChanged:(id)sender;
- (IBAction)buttonClicked:(id)sender;

- (id<KorvoBibStyle>)selectedBibStyle;
- (int32_t)chosenAction;

@end
