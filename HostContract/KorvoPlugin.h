// What the host may ask of a plug-in: the bundle's principal class adopts these.
//
// The order a host should keep: load the bundle; ask the class the questions of
// KorvoPlugin; hand it an adapter with setAdapter:, before any event can arrive;
// send start to the instance. The plug-in verifies none of that order. A plug-in that has
// one instance for the whole process hands it out by the class method defaultInstance;
// of any other the host makes one by alloc and init.
#pragma once

#import <Foundation/Foundation.h>

@protocol KorvoWordProcessorIntegrationAdapter;

@protocol KorvoPlugin <NSObject>
@required
// The name under which the plug-in registers with the host.
+ (NSString *)registrationName;
// The plug-in's own version, counted up by its maker.
+ (int64_t)version;
// The kind of service in words, for the host's list of plug-ins.
+ (NSString *)protocolType;
// Shows the plug-in's settings, where it has any (isConfigurable).
+ (void)configure;
+ (BOOL)isConfigurable;
// Whether the plug-in can work on this machine at all.
+ (BOOL)isAvailable;
// Whether the host should start it without having been told to.
+ (BOOL)isEnabledByDefault;
@end

@protocol KorvoWordProcessorIntegrationPlugin <KorvoPlugin>
@required
// Called once, after setAdapter:.
- (void)start;

// Formats the citation of some references in a style, for one position of the
// document. May be unsupported: the result is then the empty string.
- (id)citationStringForIDList:(id)identifiers withStyle:(id)style atPosition:(int32_t)position;
// Formats citations and bibliography at once. May be unsupported: the result is
// then the empty string.
- (id)bibliographyElementsForIDList:(id)identifiers
                          withStyle:(id)style
                 returningCitations:(BOOL)citationsWanted
              returningBibliography:(BOOL)bibliographyWanted;

// The host's service object; kept (retained) by the plug-in until another one, or
// nil, replaces it.
+ (id<KorvoWordProcessorIntegrationAdapter>)adapter;
+ (void)setAdapter:(id<KorvoWordProcessorIntegrationAdapter>)adapter;
@end
