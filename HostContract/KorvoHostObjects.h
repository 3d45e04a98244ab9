// The host's objects as the plug-in sees them. All of them belong to the host; the
// plug-in holds them only while it serves one request.
#pragma once

#import <Foundation/Foundation.h>

// A library of references. The plug-in only passes it on.
@protocol KorvoLibrary <NSObject>
@end

// One reference of a library.
@protocol KorvoReference <NSObject>
@required
// An identifier that is unique among all references of the host.
- (NSString *)UUID;
@end

// One cited reference with the options that its citation in the text asks for. A
// fresh citation carries the host's defaults: included in body and bibliography,
// every other option off, every text empty.
@protocol KorvoCitation <NSObject>
@required
// The cited reference, or nil while none has been found.
- (id<KorvoReference>)reference;
- (void)setReference:(id<KorvoReference>)reference;
// The text by which the reference was looked for, as the author wrote it.
- (void)setSearchString:(NSString *)searchString;
// The cited pages, as written ("45-47"). Not trimmed.
- (void)setPageRange:(NSString *)pageRange;
// Text directly before and after the citation ("see ", ", fig. 2"). Not trimmed.
- (void)setInTextPrependString:(NSString *)text;
- (void)setInTextAppendString:(NSString *)text;
// Whether the reference gets an entry in the bibliography.
- (void)setIncludeInBibliography:(BOOL)include;
// Whether the citation shows in the running text.
- (void)setIncludeInBody:(BOOL)include;
// Show the citation without the style's parentheses or brackets.
- (void)setStripEnclosure:(BOOL)strip;
// Show a superscript style's citation on the line.
- (void)setSuppressSuperscript:(BOOL)suppress;
// Show the year alone, without the authors.
- (void)setUseYearOnly:(BOOL)yearOnly;
@end

// The citations that stand together at one place of the text.
@protocol KorvoCitationGroup <NSObject>
@required
- (void)addCitation:(id<KorvoCitation>)citation;
// NSArray of id<KorvoCitation>, in the order in which they were added.
- (NSArray *)citations;
@end

// A bibliography style.
@protocol KorvoBibStyle <NSObject>
@required
// The name under which users know the style; sent to the word processor.
- (NSString *)name;
// Whether in-text citations of this style are superscript.
- (BOOL)useSuperscriptInInTextCitations;
// Called once for a document, with all its citations in document order, before any
// of them is formatted: the style may number, sort and disambiguate here.
- (void)setPropertiesInCitationArray:(NSArray *)citations;
// The bibliography of the citations. documentAttributes is a dictionary for the
// attributes of the whole document, whose key "DocumentType" holds the RTF document
// type; the style may add to it (page margins, for one).
- (NSAttributedString *)attributedBibliographyStringForCitationArray:(NSArray *)citations
                                                          attributes:(NSMutableDictionary *)
                                                                         documentAttributes;
// The in-text citation of one group. The array may be empty: the result is then an
// attributed string, possibly empty, but not nil.
- (NSAttributedString *)attributedGroupStringForCitationArray:(NSArray *)citations;
@end
