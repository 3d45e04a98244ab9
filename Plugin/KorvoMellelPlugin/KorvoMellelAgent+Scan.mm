// The scans of a document: preliminary scan, final scan, live bibliography.
//
// Every answer is sized exactly from its texts, allocated once, filled, compared with its size and
// sent. Texts that a host makes anew for each question are asked for twice: once to measure and
// once to copy; where the two differ, that is a programming error of the host's.

#import "AtEndOfScope.h"
#include "Conversation.h"
#import "ExceptionBoundary.h"
#import "KOMellelScanController.h"
#import "KorvoMellelAgent+Private.h"
#import "LoopPool.h"
#import "OutgoingBuffer.h"
#import "PayloadStrings.h"
#import "ProgrammingError.h"
#import "RefusedRequest.h"
#import "TextBridge.h"

#include <Formats/CitationResolution.h>
#include <Formats/EventTable.h>
#include <Formats/RecordMarkup.h>
#include <Formats/RequestLimits.h>
#include <Formats/ScanReply.h>
#include <Formats/ScanRequest.h>
#include <Formats/VerifiedMarker.h>

#include <optional>
#include <utility>

namespace {

// Line numbers under which programming errors are known.
constexpr NSInteger countMismatchLine = 424;
constexpr NSInteger resolutionSizeMismatchLine = 557;
constexpr NSInteger scanReplySizeMismatchLine = 597;
constexpr NSInteger liveReplySizeMismatchLine = 635;

// The formatted texts of a reply and the exact size of the buffer that they take.
struct ScanReplyContent {
  NSArray *groupStrings = nil;
  NSData *rtfData = nil;
  std::size_t size = 0;
};

// Under which names a reply is known in the log where it fails.
struct ReplyNames {
  SEL method;
  NSInteger sizeMismatchLine;
  NSString *sizeMismatch;
  NSString *outOfMemory;
};

struct ScanReply {
  OutgoingBuffer buffer;
  // Bytes that were really written: the whole buffer, unless the host's texts have become shorter.
  std::size_t stored = 0;
};

// Whether a scan waits in its dialog. There is one dialog at a time.
BOOL dialogIsOpen = NO;

}  // namespace

@interface KorvoMellelAgent (ScanSteps)
- (void)cancelWhateverHappens;
- (void)refuseRequestOf:(SEL)handler exceeding:(formats::RequestLimit)limit;
- (void)answerPreliminaryScan:(NSData *)data as:(SEL)handler;
- (void)answerFinalScan:(NSData *)data as:(SEL)handler;
- (void)answerLiveBibliography:(NSData *)data in:(NSAppleEventDescriptor *)reply as:(SEL)handler;
- (std::optional<ScanReply>)replyForCitations:(NSArray *)citations
                                      inStyle:(id<KorvoBibStyle>)style
                                           as:(const ReplyNames &)names;
- (id<KorvoBibStyle>)styleChosenInDialog;
- (void)showDialog:(NSWindow *)window;
- (int32_t)actionChosenInWindow:(NSWindow *)window of:(KOMellelScanController *)controller;
- (NSData *)bibliographyForCitations:(NSArray *)citations inStyle:(id<KorvoBibStyle>)style;
- (ScanReplyContent)contentForCitations:(NSArray *)citations inStyle:(id<KorvoBibStyle>)style;
@end

@implementation KorvoMellelAgent (Scan)

- (void)handlePreliminaryScanEvent:(NSAppleEventDescriptor *)event
                    withReplyEvent:(NSAppleEventDescriptor *)reply {
  const Conversation conversation(documentID, generateBibliography);
  const ExceptionBoundary boundary("handlePreliminaryScanEvent", formats::request::preliminaryScan,
                                   reply);
  const SEL handler = _cmd;
  if (!boundary.holds([&] {
        [self answerPreliminaryScan:[[event paramDescriptorForKeyword:keyDirectObject] data]
                                 as:handler];
      })) {
    [self cancelWhateverHappens];
  }
}

// Whether a citation matches does not change its record, so that every citation stays as its author
// wrote it until the final scan; the host is asked all the same.
- (void)reportCitationResolution:(NSArray *)citations {
  std::size_t size = formats::citationResolutionFixedSize;
  id<KorvoWordProcessorIntegrationAdapter> adapter = [KorvoMellelAgent adapter];
  id<KorvoLibrary> library = [[[adapter currentLibrary] retain] autorelease];
  const NSUInteger count = [citations count];
  TextReader textAt(citations);
  LoopPool pool;
  for (NSUInteger index = 0; index < count; ++index) {
    const std::u16string_view text = textAt(index);
    if (!text.empty()) {
      for (const std::u16string_view component : formats::citationComponents(text)) {
        [adapter referencesMatchingTag:[self scrubVerified:stringWithCodeUnits(component)]
                             inLibrary:library];
        pool.endTurn();
      }
    }
    size += formats::sizeOfRecordMarkupForComponents(text) + formats::sizeOfString(text);
  }
  pool.drain();

  OutgoingBuffer buffer([self allocateOutgoingBytes:size], size);
  if (!buffer) {
    NSLog(@"KorvoMellelAgent.reportCitationResolution: out of memory");
    [self sendCancel];
    return;
  }
  formats::PayloadWriter writer = buffer.writer();
  const int64_t written =
      [self assembleCitationResolutionBuffer:writer
                               citationArray:citations
                                    xmlArray:recordMarkupsOfCitations(citations)];
  if (written != static_cast<int64_t>(size)) {
    reportProgrammingError(
        _cmd, self, resolutionSizeMismatchLine,
        [NSString stringWithFormat:@"Programming error - buffer size mismatch in "
                                   @"citationResolutionBuffer(%ld vs %ld)",
                                   static_cast<long>(written), static_cast<long>(size)]);
  }
  [self sendAppleEventWithClass:mellelSignature
                        eventID:formats::answer::citationResolution
                         buffer:buffer.bytes()
                     bufferSize:size];
}

- (int64_t)assembleCitationResolutionBuffer:(formats::PayloadWriter &)buffer
                              citationArray:(NSArray *)citations
                                   xmlArray:(NSArray *)markups {
  const NSUInteger count = [citations count];
  formats::writeCitationResolutionHeader(buffer, static_cast<std::uint32_t>(documentID),
                                         static_cast<std::uint32_t>(count));
  TextReader citationAt(citations);
  TextReader markupAt(markups);
  LoopPool pool;
  for (NSUInteger index = 0; index < count; ++index) {
    buffer.writeString(citationAt(index));
    buffer.writeString(markupAt(index));
    pool.endTurn();
  }
  pool.drain();
  return static_cast<int64_t>(buffer.written());
}

- (void)handleFinalScanEvent:(NSAppleEventDescriptor *)event
              withReplyEvent:(NSAppleEventDescriptor *)reply {
  const Conversation conversation(documentID, generateBibliography);
  const ExceptionBoundary boundary("handleFinalScanEvent", formats::request::finalScan, reply);
  const SEL handler = _cmd;
  if (!boundary.holds([&] {
        [self answerFinalScan:[[event paramDescriptorForKeyword:keyDirectObject] data] as:handler];
      })) {
    [self cancelWhateverHappens];
  }
}

- (void)sendScanReplyForCitations:(NSArray *)citations withStyle:(id<KorvoBibStyle>)style {
  // No method has the name by which the log knows a lack of memory here: it is kept for those who
  // search a log for it.
  const ReplyNames names = {
      _cmd, scanReplySizeMismatchLine,
      @"Programming error - buffer size mismatch in sendScanReplyForCitations()",
      @"KorvoMellelAgent.scanCitations: out of memory"};
  if (const auto reply = [self replyForCitations:citations inStyle:style as:names]) {
    [self sendAppleEventWithClass:mellelSignature
                          eventID:formats::answer::finalScan
                           buffer:reply->buffer.bytes()
                       bufferSize:reply->buffer.size()];
  }
  // Behind a cancel for the second time: the cancel's own activation is part of the cancel.
  [self activateMellel];
}

- (void)handleCreateBibliographyEvent:(NSAppleEventDescriptor *)event
                       withReplyEvent:(NSAppleEventDescriptor *)reply {
  const Conversation conversation(documentID, generateBibliography);
  const ExceptionBoundary boundary("handleCreateBibliographyEvent",
                                   formats::request::liveBibliography, reply);
  const SEL handler = _cmd;
  // Mellel waits for the reply, in which the boundary puts an error: a cancel would come beside it.
  boundary.holds([&] {
    [self answerLiveBibliography:[[event paramDescriptorForKeyword:keyDirectObject] data]
                              in:reply
                              as:handler];
  });
}

- (void)sendLiveBiblioReplyEvent:(NSAppleEventDescriptor *)reply
                    forCitations:(NSArray *)citations
                       withStyle:(id<KorvoBibStyle>)style {
  const ReplyNames names = {
      _cmd, liveReplySizeMismatchLine,
      @"Programming error - buffer size mismatch in sendLiveBiblioReplyEvent()",
      @"KorvoMellelAgent.sendLiveBiblioReplyEvent: out of memory"};
  if (const auto answer = [self replyForCitations:citations inStyle:style as:names]) {
    NSAppleEventDescriptor *directObject =
        [NSAppleEventDescriptor descriptorWithDescriptorType:formats::textDescriptorType
                                                       bytes:answer->buffer.bytes()
                                                      length:answer->stored];
    // Where no reply is wanted, the reply event is a null descriptor, which takes no parameters.
    if ([reply descriptorType] != typeNull) {
      [reply setDescriptor:directObject forKeyword:keyDirectObject];
    }
  }
  [self activateMellel];
}

- (int64_t)assembleScanBuffer:(formats::PayloadWriter &)buffer
     withCitationGroupStrings:(NSArray *)groupStrings
                      rtfData:(NSData *)rtfData
                     forStyle:(id<KorvoBibStyle>)style {
  id<KorvoWordProcessorIntegrationAdapter> adapter = [KorvoMellelAgent adapter];
  const NSUInteger count = [groupStrings count];
  const bool usesSuperscript = [style useSuperscriptInInTextCitations];
  const std::u16string styleName = codeUnits([style name]);
  formats::writeScanReplyHeader(buffer, {.documentID = static_cast<std::uint32_t>(documentID),
                                         .usesSuperscript = usesSuperscript,
                                         .hasBibliography = rtfData != nil,
                                         .styleName = styleName,
                                         .groupCount = static_cast<std::uint32_t>(count)});
  // The second of the two conversions. The host is asked again, so that a reply takes one buffer of
  // the exact size and no memory for a document's texts beside it.
  CodeUnitReader codeUnitsOf;
  LoopPool pool;
  for (NSUInteger index = 0; index < count; ++index) {
    NSAttributedString *text = [groupStrings objectAtIndex:index];
    buffer.writeString(codeUnitsOf([adapter pidginRTFForAttributedString:text]));
    pool.endTurn();
  }
  pool.drain();
  buffer.writeBytes(bytesOf(rtfData));
  return static_cast<int64_t>(buffer.written());
}

@end

@implementation KorvoMellelAgent (ScanSteps)

// Behind an exception there may be another, as where memory is short; and whoever is told last has
// nobody to tell.
- (void)cancelWhateverHappens {
  const AtEndOfScope cancel([self] { [self sendCancel]; });
}

// As where there is no memory for an answer, which such a request asks for.
- (void)refuseRequestOf:(SEL)handler exceeding:(formats::RequestLimit)limit {
  logRefusal(handler, limit);
  [self sendCancel];
}

- (void)answerPreliminaryScan:(NSData *)data as:(SEL)handler {
  // Holds for no payload, since absent data has no length: every payload is answered as what it
  // reads as. A guard that did refuse one would leave a Mellel waiting that has its answer today.
  if (data == nil && [data length] >= 10) {
    NSLog(@"KorvoMellelAgent.handlePreliminaryScanEvent: illegal payload");
    return;
  }
  documentID = formats::documentIDOfScanRequest(bytesOf(data));
  formats::PreliminaryScanRequest request = formats::decodePreliminaryScanRequest(bytesOf(data));
  if (request.exceeded) {
    [self refuseRequestOf:handler exceeding:*request.exceeded];
    return;
  }
  NSArray *citations = stringsInPayload(data, std::move(request.citations));
  if (request.announcedCount != [citations count]) {
    reportProgrammingError(
        handler, self, countMismatchLine,
        [NSString stringWithFormat:@"Bad PRSQ message. count mismatch (%ld vs %ld)",
                                   static_cast<long>(request.announcedCount),
                                   static_cast<long>([citations count])]);
  }
  [self reportCitationResolution:citations];
}

- (void)answerFinalScan:(NSData *)data as:(SEL)handler {
  // Holds for no payload, as in the preliminary scan and for the same reason.
  if (data == nil && [data length] >= 14) {
    NSLog(@"KorvoMellelAgent.handleFinalScanEvent: Illegal payload");
    return;
  }
  // Nothing was asked: no dialog may surprise the user, and Mellel must not wait.
  if (data == nil) {
    [self sendCancel];
    return;
  }
  documentID = formats::documentIDOfScanRequest(bytesOf(data));
  formats::FinalScanRequest request = formats::decodeFinalScanRequest(bytesOf(data));
  if (request.exceeded) {
    [self refuseRequestOf:handler exceeding:*request.exceeded];
    return;
  }
  // Set and never cleared, on purpose: once a request has asked for a bibliography, every later
  // answer carries one, and Mellel takes it where it asked.
  if (request.wantsBibliography) {
    generateBibliography = YES;
  }
  // A second scan while the first one waits for the user: one dialog over the other would leave the
  // user to guess which document each is about.
  if (dialogIsOpen) {
    [self sendCancel];
    return;
  }
  for (std::string_view &citation : request.citations) {
    citation = formats::withoutVerifiedMarkers(citation);
  }
  id<KorvoBibStyle> style = nil;
  if (!request.styleName.empty()) {
    style = [[KorvoMellelAgent adapter] bibStyleNamed:stringWithUTF8(request.styleName)];
  }
  if (style == nil) {
    style = [self styleChosenInDialog];
  }
  [self sendScanReplyForCitations:stringsInPayload(data, std::move(request.citations))
                        withStyle:style];
}

- (void)answerLiveBibliography:(NSData *)data in:(NSAppleEventDescriptor *)reply as:(SEL)handler {
  // Holds for no payload, as in the scans and for the same reason.
  if (data == nil && [data length] >= 14) {
    NSLog(@"KorvoMellelAgent.handleCreateBibliographyEvent: Illegal payload");
    return;
  }
  // Not the document that the request names: the answer lies in the request's own reply, and is
  // known by that.
  documentID = 0;
  formats::LiveBibliographyRequest request = formats::decodeLiveBibliographyRequest(bytesOf(data));
  if (request.exceeded) {
    [self refuseRequestOf:handler exceeding:*request.exceeded];
    return;
  }
  // Never cleared, as in the final scan.
  if (request.wantsBibliography) {
    generateBibliography = YES;
  }
  id<KorvoWordProcessorIntegrationAdapter> adapter = [KorvoMellelAgent adapter];
  id<KorvoBibStyle> style = nil;
  if (!request.styleName.empty()) {
    style = [adapter bibStyleNamed:stringWithUTF8(request.styleName)];
  }
  if (style == nil) {
    style = [adapter defaultStyle];
    NSLog(@"KorvoMellelAgent.handleCreateBibliographyEvent: WARNING: expected a bibstyle, but got "
          @"none");
  }
  [self sendLiveBiblioReplyEvent:reply
                    forCitations:stringsInPayload(data, std::move(request.citations))
                       withStyle:style];
}

// Nothing where there can be no reply; Mellel has then got a cancel.
- (std::optional<ScanReply>)replyForCitations:(NSArray *)citations
                                      inStyle:(id<KorvoBibStyle>)style
                                           as:(const ReplyNames &)names {
  // The user closed the dialog, or the host has no style at all: there is nothing to format with.
  if (style == nil) {
    [self sendCancel];
    return std::nullopt;
  }
  const ScanReplyContent content = [self contentForCitations:citations inStyle:style];
  ScanReply reply = {{[self allocateOutgoingBytes:content.size], content.size}};
  if (!reply.buffer) {
    NSLog(@"%@", names.outOfMemory);
    [self sendCancel];
    return std::nullopt;
  }
  formats::PayloadWriter writer = reply.buffer.writer();
  const int64_t written = [self assembleScanBuffer:writer
                          withCitationGroupStrings:content.groupStrings
                                           rtfData:content.rtfData
                                          forStyle:style];
  if (written != static_cast<int64_t>(content.size)) {
    reportProgrammingError(names.method, self, names.sizeMismatchLine, names.sizeMismatch);
  }
  reply.stored = writer.stored();
  return reply;
}

// The host comes to the front for the dialog, and goes back to where it was, also when the dialog
// fails. On macOS events that arrive meanwhile may be dispatched by the dialog's loop; on Linux
// they wait.
- (id<KorvoBibStyle>)styleChosenInDialog {
  id<KorvoWordProcessorIntegrationAdapter> adapter = [KorvoMellelAgent adapter];
  KOMellelScanController *controller = nil;
  int32_t action = KOMellelScanNoAction;
  const BOOL wasHidden = [NSApp isHidden];
  if (wasHidden) {
    [NSApp unhide:self];
  } else {
    [NSApp activateIgnoringOtherApps:YES];
  }
  {
    dialogIsOpen = YES;
    const AtEndOfScope goingBack([=] {
      dialogIsOpen = NO;
      [self makeSureNextWindowIsNotStuck];
      if (wasHidden) {
        [NSApp hide:self];
      } else {
        [NSApp deactivate];
      }
    });
    controller = [KOMellelScanController openMellelScanControllerWithAdapter:adapter];
    action = [self actionChosenInWindow:[controller window] of:controller];
  }
  if (action != KOMellelScanGenerateCopyAction) {
    return nil;
  }
  id<KorvoBibStyle> style = [controller selectedBibStyle];
  return style != nil ? style : [adapter defaultStyle];
}

// Running a window modally would show it, too, but not always where the user looks and types.
- (void)showDialog:(NSWindow *)window {
  // Only a window that is not visible yet is centred by its modal session.
  [window center];
  // GNUstep's newer releases give the keyboard only to a visible window when they run it modally.
  [window makeKeyAndOrderFront:self];
  // Since macOS 14 the host's activation is a request, which may be refused. As long as Mellel is
  // the active application, a window of ours comes in front of its windows only in this manner,
  // which is meant for applications that work together.
  [window orderFrontRegardless];
}

- (int32_t)actionChosenInWindow:(NSWindow *)window of:(KOMellelScanController *)controller {
  if (window == nil) {
    NSLog(@"KorvoMellelAgent.handleFinalScanEvent: The scan dialog could not be loaded");
    return KOMellelScanNoAction;
  }
  const AtEndOfScope closing([window] { [window close]; });
  [self showDialog:window];
  [NSApp runModalForWindow:window];
  return [controller chosenAction];
}

- (NSData *)bibliographyForCitations:(NSArray *)citations inStyle:(id<KorvoBibStyle>)style {
  NSMutableDictionary *attributes = [NSMutableDictionary dictionaryWithObject:NSRTFTextDocumentType
                                                                       forKey:@"DocumentType"];
  NSAttributedString *bibliography =
      [style attributedBibliographyStringForCitationArray:citations attributes:attributes];
  return [bibliography RTFFromRange:NSMakeRange(0, [bibliography length])
                 documentAttributes:attributes];
}

- (ScanReplyContent)contentForCitations:(NSArray *)citations inStyle:(id<KorvoBibStyle>)style {
  ScanReplyContent content;
  content.size = formats::scanReplyFixedSize + formats::sizeOfString(codeUnits([style name]));
  NSArray *groups = [self citationGroupsWithCitationStringArray:citations];
  id<KorvoWordProcessorIntegrationAdapter> adapter = [KorvoMellelAgent adapter];
  NSArray *hostCitations = [adapter citationArrayForCitationGroupArray:groups];
  if (hostCitations == nil) {
    hostCitations = [NSArray array];
  }
  [style setPropertiesInCitationArray:hostCitations];
  content.groupStrings = [self citationGroupStringsWithGroupArray:groups andStyle:style];
  const NSUInteger count = [content.groupStrings count];
  // The first of the two conversions, which only measures.
  CodeUnitReader codeUnitsOf;
  LoopPool pool;
  for (NSUInteger index = 0; index < count; ++index) {
    NSAttributedString *text = [content.groupStrings objectAtIndex:index];
    content.size += formats::sizeOfString(codeUnitsOf([adapter pidginRTFForAttributedString:text]));
    pool.endTurn();
  }
  pool.drain();
  if (generateBibliography) {
    content.rtfData = [self bibliographyForCitations:hostCitations inStyle:style];
    content.size += [content.rtfData length];
  }
  return content;
}

@end
