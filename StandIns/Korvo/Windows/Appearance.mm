#include "Appearance.h"

#import <Cocoa/Cocoa.h>

#include <utility>

namespace korvo::windows {
namespace {

const std::pair<NSString *, NSString *> texts[] = {
    // Without a window manager windows would have no title bars.
    {@"GSBackHandlesWindowDecorations", @"NO"},
    // One menu bar at the top of the screen, scrollers on the right.
    {@"NSInterfaceStyleDefault", @"NSMacintoshInterfaceStyle"},
    {@"NSMenuInterfaceStyle", @"NSMacintoshInterfaceStyle"},
    {@"NSScrollViewInterfaceStyle", @"NSMacintoshInterfaceStyle"},
    {@"GSCommandKeyString", @"Alt+"},
    // Fonts that have italics, for titles, and are read easily.
    {@"NSFont", @"LiberationSans"},
    {@"NSBoldFont", @"LiberationSans-Bold"},
    {@"NSFontSize", @"13"},
    // Red, green and blue: light windows in place of grey ones.
    {@"windowBackgroundColor", @"0.95 0.95 0.95"},
    {@"controlColor", @"0.95 0.95 0.95"},
    {@"controlBackgroundColor", @"1 1 1"},
    {@"controlShadowColor", @"0.8 0.8 0.8"},
    {@"controlDarkShadowColor", @"0.6 0.6 0.6"},
    {@"textBackgroundColor", @"1 1 1"},
    {@"rowBackgroundColor", @"1 1 1"},
    {@"alternateRowBackgroundColor", @"0.95 0.96 0.97"},
    {@"gridColor", @"0.9 0.9 0.9"},
    {@"scrollBarColor", @"0.87 0.87 0.87"},
    {@"selectedControlColor", @"0.75 0.85 1"},
    {@"selectedTextBackgroundColor", @"0.75 0.85 1"},
    {@"selectedMenuItemColor", @"0.2 0.4 0.8"},
    {@"selectedMenuItemTextColor", @"1 1 1"},
};

// GNUstep finds a font with a character that the usual one lacks among those only that are named:
// arrows and other signs, Chinese and Japanese. It draws no character beyond the first 65,536,
// which most emoji are.
NSArray *fontsForRareCharacters() {
  return [NSArray arrayWithObjects:@"DejaVuSans", @"DroidSansFallback", nil];
}

}  // namespace

void registerAppearance() {
  NSMutableDictionary *defaults = [NSMutableDictionary dictionary];
  for (const auto &[key, value] : texts) {
    [defaults setObject:value forKey:key];
  }
  [defaults setObject:fontsForRareCharacters() forKey:@"NSPreferredFonts"];
  [[NSUserDefaults standardUserDefaults] registerDefaults:defaults];
}

}  // namespace korvo::windows
