#import "KOApplicationController.h"

#include "Effects.h"

#import <StandIns/Korvo/Adapter/StringConversion.h>
#import <StandIns/Korvo/Windows/Controls.h>

#include <algorithm>
#include <string>

namespace {

// What scripts know a reference by.
std::string nameForScripts(KOReference *reference) {
  const auto tag = [reference citationTag];
  return tag && *tag ? **tag : korvo::adapter::utf8([reference UUID]);
}

// A screen with room for both shows the notices below the library.
NSPoint cornerBelow(NSWindow *upper, NSWindow *lower) {
  const NSRect frame = [upper frame];
  const CGFloat lowest = NSMinY([[NSScreen mainScreen] visibleFrame]) + NSHeight([lower frame]);
  return NSMakePoint(NSMinX(frame), std::max(NSMinY(frame) - korvo::windows::gap, lowest));
}

// In points, of one editor below and beside the other.
constexpr CGFloat editorStep = 26;

// Where the title of the last one stays in sight; from the top again where there is no room below.
NSPoint placeAfter(NSPoint last, NSWindow *window) {
  const NSRect screen = [[NSScreen mainScreen] visibleFrame];
  const NSPoint next = NSMakePoint(last.x + editorStep, last.y - editorStep);
  const bool hasRoom = next.y - NSHeight([window frame]) >= NSMinY(screen) &&
                       next.x + NSWidth([window frame]) <= NSMaxX(screen);
  return hasRoom ? next
                 : NSMakePoint(NSMinX(screen) + 4 * editorStep, NSMaxY(screen) - 2 * editorStep);
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
    korvo::windows::rememberPlace(window, @"Library",
                                  NSMakePoint(NSMinX(screen) + 40, NSMaxY(screen) - 40));
  }
  [mainWindow_ showWindow:sender];
}

- (void)placeNotices {
  NSWindow *window = [noticeWindow_ window];
  if (![window isVisible]) {
    korvo::windows::rememberPlace(window, @"Notices", cornerBelow([mainWindow_ window], window));
  }
}

- (void)showNotices:(id)sender {
  [self placeNotices];
  [noticeWindow_ showWindow:sender];
}

- (void)showStyles:(id)sender {
  if (styleWindow_ == nil) {
    styleWindow_ = [[KOStylePickerWindowController alloc] initWithStyles:*shelf_];
    const NSRect frame = [[styleWindow_ window] frame];
    korvo::windows::rememberPlace([styleWindow_ window], @"Styles",
                                  NSMakePoint(NSMinX(frame), NSMaxY(frame)));
  }
  [styleWindow_ showWindow:sender];
}

- (void)savePlaces {
  NSWindow *const windows[] = {[mainWindow_ window], [noticeWindow_ window], [styleWindow_ window]};
  for (NSWindow *window : windows) {
    if ([[window frameAutosaveName] length] > 0) {
      [window saveFrameUsingName:[window frameAutosaveName]];
    }
  }
  [[NSUserDefaults standardUserDefaults] synchronize];
}

- (void)editSelection:(id)sender {
  [mainWindow_ editSelectedReferences:sender];
}

- (void)comeToFront {
  korvo::application::announce("front");
  [NSApp activateIgnoringOtherApps:YES];
}

// Of the application, when its user quits it.
- (NSApplicationTerminateReply)applicationShouldTerminate:(NSApplication *)application {
  (void)application;
  NSArray *open = [self editors];
  for (NSUInteger index = 0; index < [open count]; ++index) {
    if (![(KOReferenceEditorWindowController *)[open objectAtIndex:index] mayClose]) {
      return NSTerminateCancel;
    }
  }
  return NSTerminateNow;
}

// The adapter's side

- (KOLibrary *)currentLibrary {
  return [mainWindow_ currentLibrary];
}

- (NSArray *)selectedReferences {
  return [mainWindow_ selectedReferences];
}

- (void)displayEditorForReference:(KOReference *)reference {
  [self editReference:reference];
}

- (void)showNoticeWithHeader:(NSString *)header summary:(NSAttributedString *)summary {
  korvo::application::announceNotice(korvo::adapter::utf8(header),
                                     korvo::adapter::utf8([summary string]));
  [self placeNotices];
  [noticeWindow_ showNoticeWithHeader:header summary:summary];
}

// The windows' side

- (void)reportProblem:(NSString *)problem {
  [adapter_ reportProblem:problem];
}

- (void)editReference:(KOReference *)reference {
  korvo::application::announce("editor: " + nameForScripts(reference));
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
  lastEditor_ = placeAfter(lastEditor_, [editor window]);
  [[editor window] setFrameTopLeftPoint:lastEditor_];
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
