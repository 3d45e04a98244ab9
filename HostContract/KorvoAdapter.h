// The host's service object for word-processor plug-ins: everything that the plug-in
// asks of the host goes through it. Every message arrives on the main thread, and
// its result is used at once.
#pragma once

#import "KorvoHostObjects.h"

#import <Foundation/Foundation.h>

@protocol KorvoWordProcessorIntegrationAdapter <NSObject>
@required

// Selection and references

// NSArray of id<KorvoReference>: what the user has selected, in the order shown; may
// be empty.
- (NSArray *)selectedReferences;
// The text that stands for the reference in a document, or nil (or empty) when the
// reference has none.
- (NSString *)inTextCitationTagForReference:(id<KorvoReference>)reference;
// Opens the host's editor on the reference.
- (void)displayEditorForReference:(id<KorvoReference>)reference;
// A few lines of text that describe the reference to the user, its title among them.
- (NSAttributedString *)summaryWithTitleForReference:(id<KorvoReference>)reference;

// Library

// The library selected in the host, or nil when none is.
- (id<KorvoLibrary>)currentLibrary;
// NSSet of id<KorvoReference>: every reference that the text names, none, one or more.
// The text is a citation identifier, or what an author wrote in its place. The library
// may be nil.
- (NSSet *)referencesMatchingTag:(NSString *)tag inLibrary:(id<KorvoLibrary>)library;

// Citations

// A new empty group.
- (id<KorvoCitationGroup>)createCitationGroup;
// A new citation with the host's defaults.
- (id<KorvoCitation>)createCitation;
// Splits what stands at one place of the text into NSArray of NSString, one a citation.
- (NSArray *)citationStringArrayForCitationGroupString:(NSString *)groupString;
// NSArray of all id<KorvoCitation> of the groups, in order.
- (NSArray *)citationArrayForCitationGroupArray:(NSArray *)groups;

// Text

// The text in the restricted RTF of the host (plain text, underline, italic, bold,
// superscript, subscript). The same text must give the same result, every time.
- (NSString *)pidginRTFForAttributedString:(NSAttributedString *)text;
// Text attributes (NSDictionary) for what the plug-in shows to the user.
- (NSDictionary *)bodyTextAttributes;
- (NSDictionary *)subtitleTextAttributes;
- (NSDictionary *)notesTextAttributes;
// Shows a notice to the user.
- (void)postNoticeWithHeader:(NSString *)header attributedSummary:(NSAttributedString *)summary;

// Styles

// The style of that name, or nil when the host has none.
- (id<KorvoBibStyle>)bibStyleNamed:(NSString *)name;
// The style to use when no other is named; nil when the host has none.
- (id<KorvoBibStyle>)defaultStyle;
// NSArray of NSString: names of the styles that the user picked for menus, in the
// order in which to show them.
- (NSArray *)favoriteBibStyleNames;
@end
