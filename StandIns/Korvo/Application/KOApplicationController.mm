#import "KOApplicationController.h"

#include "Effects.h"

#import <StandIns/Korvo/Adapter/StringConversion.h>
#import <StandIns/Korvo/Windows/Controls.h>

#include <string>

namespace {

// What scripts know a reference by.
std::string nameForScripts(KOReference *reference) {
  const auto tag = [reference citationTag];
  return tag && *tag ? **tag : korvo::adapter::utf8([reference UUID]);
}

// A screen with room for both shows the notices below the library.
void placeBelow(NSWindow *lower, NSWindow *upper) {
  const NSRect frame = [upper frame];
  const NSRect screen = [[NSScreen mainScreen] visibleFrame];
  NSPoint corner = NSMakePoint(NSMinX(frame), NSMinY(frame) - korvo::windows::gap);
  const CGFloat lowest = NSMinY(screen) + NSHeight([lower frame]);
  if (corner.y < lowest) {
    corner.y = lowest;
  }
  [lower setFrameTopLeftPoint:corner];
}

}  // namespace

@implementation KOApplicationController

- (id)initWithLibraries:(NSArray *)libraries styles:(korvo::adapter::StyleShelf &)shelf {
  self = [super init];
  if (self != nil) {
    shelf_ = &shelf;
    editors_ = [[NSMutableArray alloc] init];
    adapter_ = [[KOAdapter alloc] initWithInterface:self styles:shelf];
    shelf.setReporter(adapter_);
    noticeWindow_ = [[KONoticeWindowController alloc] init];
    mainWindow_ = [[KOMainWindowController alloc] initWithLibraries:libraries delegate:self];
  }
  return self;
}

- (void)dealloc {
  shelf_->setReporter(nil);
  [adapter_ release];
  [mainWindow_ release];
  [noticeWindow_ release];
  [styleWindow_ release];
  [editors_ release];
  [super dealloc];
}

- (KOAdapter *)adapter {
  return adapter_;
}

- (KOMainWindowController *)mainWindow {
  return mainWindow_;
}

- (KONoticeWindowController *)noticeWindow {
  return noticeWindow_;
}

- (NSArray *)editors {
  return [[editors_ copy] autorelease];
}

- (void)showLibrary:(id)sender {
  NSWindow *window = [mainWindow_ window];
  if (![window isVisible]) {
    // Near the upper left, so that there is room for the notices below.
    const NSRect screen = [[NSScreen mainScreen] visibleFrame];
    [window setFrameTopLeftPoint:NSMakePoint(NSMinX(screen) + 40, NSMaxY(screen) - 40)];
  }
  [mainWindow_ showWindow:sender];
}

- (void)showNotices:(id)sender {
  [noticeWindow_ showWindow:sender];
}

- (void)showStyles:(id)sender {
  if (styleWindow_ == nil) {
    styleWindow_ = [[KOStylePickerWindowController alloc] initWithStyles:*shelf_];
  }
  [styleWindow_ showWindow:sender];
}

- (void)editSelection:(id)sender {
  [mainWindow_ editSelectedReferences:sender];
}

- (void)comeToFront {
  korvo::application::announce("front");
  [NSApp activateIgnoringOtherApps:YES];
}

// The adapter's side

- (KOLibrary *)currentLibrary {
  return [mainWindow_ currentLibrary];
}

- (NSArray *)selectedReferences {
  return [mainWindow_ selectedReferences];
}

- (void)displayEditorForReference:(KOReference *)reference {
  korvo::application::announce("editor: " + nameForScripts(reference));
  [self editReference:reference];
}

- (void)showNoticeWithHeader:(NSString *)header summary:(NSAttributedString *)summary {
  korvo::application::announceNotice(korvo::adapter::utf8(header),
                                     korvo::adapter::utf8([summary string]));
  if (![[noticeWindow_ window] isVisible]) {
    placeBelow([noticeWindow_ window], [mainWindow_ window]);
  }
  [noticeWindow_ showNoticeWithHeader:header summary:summary];
}

// The windows' side

- (void)reportProblem:(NSString *)problem {
  [adapter_ reportProblem:problem];
}

- (void)editReference:(KOReference *)reference {
  for (NSUInteger index = 0; index < [editors_ count]; ++index) {
    KOReferenceEditorWindowController *open = [editors_ objectAtIndex:index];
    if ([[open reference] isEqual:reference]) {
      [open showWindow:self];
      return;
    }
  }
  KOReferenceEditorWindowController *editor =
      [[[KOReferenceEditorWindowController alloc] initWithReference:reference
                                                           delegate:self] autorelease];
  [editors_ addObject:editor];
  [editor showWindow:self];
}

- (void)referenceWasSaved:(KOReference *)reference {
  (void)reference;
  [mainWindow_ reload];
}

- (void)editorWillClose:(KOReferenceEditorWindowController *)editor {
  // The window is still at work with its controller.
  [[editor retain] autorelease];
  [editors_ removeObjectIdenticalTo:editor];
}

@end
