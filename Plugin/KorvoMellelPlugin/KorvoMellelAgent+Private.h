// What the parts of the agent send to each other, and what its tests look at.
#pragma once

#import "KorvoMellelAgent.h"

#include <Formats/PayloadWriter.h>

#import <ApplicationServices/ApplicationServices.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

// Mellel's signature, and the class of the events from and to it.
extern const OSType mellelSignature;

@interface KorvoMellelAgent (Lifecycle)
// Removes the handlers of the four oldest requests; the other four stay.
- (void)unregisterMellelEventHandlers;
// A text of the bundle's table "Plugin", which is keyed by the English text.
- (NSString *)localizedText:(NSString *)key;
@end

@interface KorvoMellelAgent (Transport)
// Sends an event to Mellel, without waiting for an answer. The payload, if any, becomes the direct
// object. Returns the status of the first step that failed, or noErr.
- (OSStatus)sendAppleEventWithClass:(AEEventClass)eventClass
                            eventID:(AEEventID)eventID
                             buffer:(const void *)buffer
                         bufferSize:(uint64_t)bufferSize;
- (OSStatus)sendAppleEventWithClass:(AEEventClass)eventClass
                            eventID:(AEEventID)eventID
                     descriptorType:(DescType)descriptorType
                            payload:(std::optional<std::string_view>)payload;
// The first process of that signature, or {0, 0}.
- (ProcessSerialNumber)getProcessWithSignature:(OSType)signature;
// Brings Mellel to the front; NO where it is not running or will not come.
- (BOOL)activateMellel;
// Tells Mellel that the conversation was abandoned, and activates it.
- (void)sendCancel;
- (void)sendPreferences;
- (void)makeSureNextWindowIsNotStuck;
// Zeroed bytes for std::free, or null: the one place where outgoing payloads are allocated.
- (void *)allocateOutgoingBytes:(std::size_t)size;
- (void)handleHandshakeEvent:(NSAppleEventDescriptor *)event
              withReplyEvent:(NSAppleEventDescriptor *)reply;
@end

@interface KorvoMellelAgent (CitationParsing)
// Citation group strings to an array of id<KorvoCitationGroup>, one each. Posts at most one notice.
- (NSArray *)citationGroupsWithCitationStringArray:(NSArray *)groupStrings;
- (void)appendNotFoundNoticeToSummary:(NSMutableAttributedString *)summary
                              atIndex:(int32_t)number
                               forTag:(NSString *)tag;
- (void)appendDuplicateNoticeToSummary:(NSMutableAttributedString *)summary
                               atIndex:(int32_t)number
                                forTag:(NSString *)tag
                         referenceUsed:(id<KorvoReference>)referenceUsed
                       referencesFound:(NSSet *)referencesFound;
- (void)appendNotesToSummary:(NSMutableAttributedString *)summary;
- (NSString *)scrubVerified:(NSString *)groupString;
// The formatted text of each group, an array of NSAttributedString.
- (NSArray *)citationGroupStringsWithGroupArray:(NSArray *)groups andStyle:(id<KorvoBibStyle>)style;
@end

@interface KorvoMellelAgent (Scan)
- (void)handlePreliminaryScanEvent:(NSAppleEventDescriptor *)event
                    withReplyEvent:(NSAppleEventDescriptor *)reply;
- (void)handleFinalScanEvent:(NSAppleEventDescriptor *)event
              withReplyEvent:(NSAppleEventDescriptor *)reply;
- (void)handleCreateBibliographyEvent:(NSAppleEventDescriptor *)event
                       withReplyEvent:(NSAppleEventDescriptor *)reply;
- (void)reportCitationResolution:(NSArray *)citations;
- (void)sendScanReplyForCitations:(NSArray *)citations withStyle:(id<KorvoBibStyle>)style;
- (void)sendLiveBiblioReplyEvent:(NSAppleEventDescriptor *)reply
                    forCitations:(NSArray *)citations
                       withStyle:(id<KorvoBibStyle>)style;
// The assemblers return the bytes that the payload needs, which the caller compares with what it
// had computed; the writer keeps what does not fit out of the buffer.
- (int64_t)assembleCitationResolutionBuffer:(formats::PayloadWriter &)buffer
                              citationArray:(NSArray *)citations
                                   xmlArray:(NSArray *)markups;
- (int64_t)assembleScanBuffer:(formats::PayloadWriter &)buffer
     withCitationGroupStrings:(NSArray *)groupStrings
                      rtfData:(NSData *)rtfData
                     forStyle:(id<KorvoBibStyle>)style;
@end

@interface KorvoMellelAgent (Insertion)
- (void)handleFindStringEvent:(NSAppleEventDescriptor *)event
               withReplyEvent:(NSAppleEventDescriptor *)reply;
- (void)handleFindCitationEvent:(NSAppleEventDescriptor *)event
                 withReplyEvent:(NSAppleEventDescriptor *)reply;
- (void)handleImportCitationsEvent:(NSAppleEventDescriptor *)event
                    withReplyEvent:(NSAppleEventDescriptor *)reply;
- (void)handleScanCitationsEvent:(NSAppleEventDescriptor *)event
                  withReplyEvent:(NSAppleEventDescriptor *)reply;
- (NSMutableString *)assembleSelectedCitations;
- (void)insertCitation:(NSString *)citation;
- (void)postNullTagNotice;
- (void)postNoSelectionNotice;
@end
