#import "KOMellelScanController.h"

#include "AtEndOfScope.h"
#import "HostArray.h"
#import "ThrownObject.h"
#import "Translation.h"
#import "WindowOfNib.h"

extern "C" {
const int32_t KOMellelScanWaitingForUser = -1;
const int32_t KOMellelScanNoAction = 0;
const int32_t KOMellelScanReformatAction = 1;
const int32_t KOMellelScanGenerateCopyAction = 2;

NSString *const KOMellelScanLastStylePrefKey = @"Last Style Used For Mellel Scan";
}

namespace {

// The nib's.
constexpr NSInteger labelTag = 10;
NSString *const noFavorites =
    @"There are no favorite styles yet. Add some in Korvo's citation styles.";

// Where to put what the host throws while a nib is loaded: GNUstep's loader ends such an exception
// itself, and would leave a dialog with half of what it shows. Retained for whoever waits for it;
// null where nobody does.
id *thrownWhileLoading = nullptr;

}  // namespace

@interface KOMellelScanController (Private)
- (void)setAdapter:(id<KorvoWordProcessorIntegrationAdapter>)newAdapter;
- (void)fillWindow;
- (void)populateFormatList;
- (NSString *)selectedTitle;
// Called by the nib. With setters it is the same on every platform who owns the outlets.
- (void)setFormatSelectorPopUpButton:(NSPopUpButton *)popUpButton;
- (void)setGenerateCopyWithBibInStyleButton:(NSButton *)button;
@end

@implementation KOMellelScanController

+ (KOMellelScanController *)openMellelScanControllerWithAdapter:
    (id<KorvoWordProcessorIntegrationAdapter>)hostAdapter {
  KOMellelScanController *controller = [[[self alloc] initWithAdapter:hostAdapter] autorelease];
// Deprecated on macOS since 10.8, and there all the same. What came after it is not in GNUstep
// 0.29.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
  id thrown = nil;
  {
    const AtEndOfScope forgetting([&thrown] {
      thrownWhileLoading = nullptr;
      [thrown autorelease];
    });
    thrownWhileLoading = &thrown;
    [NSBundle loadNibNamed:@"MellelScanDialog" owner:controller];
  }
#pragma GCC diagnostic pop
  leaveWindowOfNibTo(controller);
  if (thrown != nil) {
    @throw thrown;
  }
  return controller;
}

- (id)initWithAdapter:(id<KorvoWordProcessorIntegrationAdapter>)hostAdapter {
  self = [super init];
  if (self != nil) {
    chosenAction = KOMellelScanWaitingForUser;
    [self setAdapter:hostAdapter];
  }
  return self;
}

- (void)dealloc {
  [formatSelectorPopUpButton release];
  [generateCopyWithBibInStyleButton release];
  [adapter release];
  [selectedBibStyle release];
  [super dealloc];
}

- (void)awakeFromNib {
  id thrown = KOMellelObjectThrownBy(
      [](void *controller) { [static_cast<KOMellelScanController *>(controller) fillWindow]; },
      self);
  if (thrown != nil) {
    if (thrownWhileLoading != nullptr) {
      *thrownWhileLoading = [thrown retain];
    }
    @throw thrown;
  }
}

- (IBAction)formatSelectionChanged:(id)__attribute__((unused)) sender {
  NSString *title = [self selectedTitle];
  if (title == nil) {
    return;
  }
  id<KorvoBibStyle> style = [[adapter bibStyleNamed:title] retain];
  [selectedBibStyle release];
  selectedBibStyle = style;
  [[NSUserDefaults standardUserDefaults] setObject:title forKey:KOMellelScanLastStylePrefKey];
}

- (IBAction)buttonClicked:(id)sender {
  NSString *title = [self selectedTitle];
  if (title == nil) {
    return;
  }
  // Asked for a second time, behind the selection: the host may have lost the style meanwhile.
  if ([adapter bibStyleNamed:title] == nil) {
    // With the two blanks, here and below, by which the lines are known.
    NSLog(@"KOMellelScanController.buttonClicked:  Can't find style named %@", title);
    return;
  }
  if (sender != generateCopyWithBibInStyleButton) {
    NSLog(@"KOMellelScanController.buttonClicked:  Heard from an unexpected button");
    return;
  }
  chosenAction = KOMellelScanGenerateCopyAction;
  [NSApp stopModalWithCode:KOMellelScanGenerateCopyAction];
}

- (id<KorvoBibStyle>)selectedBibStyle {
  return selectedBibStyle;
}

- (int32_t)chosenAction {
  return chosenAction;
}

// The caller closes the window, once it has read the outcome.
- (BOOL)windowShouldClose:(id)__attribute__((unused)) sender {
  chosenAction = KOMellelScanNoAction;
  [NSApp stopModalWithCode:KOMellelScanNoAction];
  return NO;
}

@end

@implementation KOMellelScanController (Private)

- (void)setAdapter:(id<KorvoWordProcessorIntegrationAdapter>)newAdapter {
  [newAdapter retain];
  [adapter release];
  adapter = newAdapter;
}

- (void)setFormatSelectorPopUpButton:(NSPopUpButton *)popUpButton {
  [popUpButton retain];
  [formatSelectorPopUpButton release];
  formatSelectorPopUpButton = popUpButton;
}

- (void)setGenerateCopyWithBibInStyleButton:(NSButton *)button {
  [button retain];
  [generateCopyWithBibInStyleButton release];
  generateCopyWithBibInStyleButton = button;
}

// nil for an empty menu. (The menu's own titleOfSelectedItem is then an empty string on GNUstep.)
- (NSString *)selectedTitle {
  return [[formatSelectorPopUpButton selectedItem] title];
}

- (void)fillWindow {
  [self populateFormatList];
  if ([formatSelectorPopUpButton numberOfItems] == 0) {
    [[[[self window] contentView] viewWithTag:labelTag] setStringValue:noFavorites];
  }
  translateDialog([self window], @"ScanDialog");
}

- (void)populateFormatList {
  [formatSelectorPopUpButton removeAllItems];
  [formatSelectorPopUpButton addItemsWithTitles:stringsIn([adapter favoriteBibStyleNames])];
  if ([formatSelectorPopUpButton numberOfItems] == 0) {
    return;
  }
  NSInteger index = 0;
  NSString *lastStyle =
      [[NSUserDefaults standardUserDefaults] stringForKey:KOMellelScanLastStylePrefKey];
  if (lastStyle != nil) {
    index = [formatSelectorPopUpButton indexOfItemWithTitle:lastStyle];
    // -1 is the answer for none; a menu that looks it up in an array could say NSNotFound.
    if (index < 0 || index == NSNotFound) {
      index = 0;
    }
  }
  [formatSelectorPopUpButton selectItemAtIndex:index];
  [self formatSelectionChanged:self];
}

@end
