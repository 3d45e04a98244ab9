#import "MainMenu.h"

namespace korvo::windows {
namespace {

NSMenu *addSubmenu(NSMenu *menu, NSString *title) {
  NSMenuItem *item = [menu addItemWithTitle:title action:nullptr keyEquivalent:@""];
  NSMenu *submenu = [[[NSMenu alloc] initWithTitle:title] autorelease];
  [menu setSubmenu:submenu forItem:item];
  return submenu;
}

void addItem(NSMenu *menu, NSString *title, SEL action, NSString *key, id target) {
  [[menu addItemWithTitle:title action:action keyEquivalent:key] setTarget:target];
}

}  // namespace

void installMainMenu(id target) {
  NSMenu *menu = [[[NSMenu alloc] initWithTitle:@"Korvo"] autorelease];
  // GNUstep knows the application's own menu by the name of the process, and adds one where it
  // finds none; afterwards it may bear any name.
  NSMenu *application = addSubmenu(menu, [[NSProcessInfo processInfo] processName]);
  addItem(application, @"Citation Styles...", @selector(showStyles:), @",", target);
  addItem(application, @"Hide", @selector(hide:), @"h", NSApp);
  addItem(application, @"Quit", @selector(terminate:), @"q", NSApp);

  NSMenu *edit = addSubmenu(menu, @"Edit");
  addItem(edit, @"Cut", @selector(cut:), @"x", nil);
  addItem(edit, @"Copy", @selector(copy:), @"c", nil);
  addItem(edit, @"Paste", @selector(paste:), @"v", nil);
  addItem(edit, @"Select All", @selector(selectAll:), @"a", nil);

  NSMenu *reference = addSubmenu(menu, @"Reference");
  addItem(reference, @"Edit", @selector(editSelection:), @"e", target);
  addItem(reference, @"Save", @selector(saveClicked:), @"s", nil);

  NSMenu *shown = addSubmenu(menu, @"Window");
  addItem(shown, @"Library", @selector(showLibrary:), @"1", target);
  addItem(shown, @"Notices", @selector(showNotices:), @"2", target);
  addItem(shown, @"Close", @selector(performClose:), @"w", nil);

  [NSApp setMainMenu:menu];
  [[menu itemAtIndex:0] setTitle:@"Korvo"];
  [NSApp setWindowsMenu:shown];
}

}  // namespace korvo::windows
