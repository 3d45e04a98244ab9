// The plug-in's texts in the user's language, from the tables of its own bundle. A table is keyed
// by the English text.
#pragma once

#import <Cocoa/Cocoa.h>

// Which language it is the platform decides: by what the user prefers, among those of the bundle;
// on macOS among those that the host has, too. Without a translation it is the English text.
NSString *translatedText(NSString *english, NSString *table);

// Translates the title, the labels and the buttons of a dialog, which the nib has in English, by
// the table, and makes the dialog as wide as they need. Menus stay: what they hold is the host's.
void translateDialog(NSWindow *dialog, NSString *table);
