// The scans of a document: preliminary scan, final scan, live bibliography.
//
// Every answer is sized exactly from its texts, allocated once, filled, compared with its size and
// sent. Texts that a host makes anew for each question are asked for twice: once to measure and
// once to copy; where the two differ, that is a programming error of the host's.

#import "AtEndOfScope.h"
#import "KOMellelScanController.h"
#import "KorvoMellelAgent+Private.h"
#import "LoopPool.h"
#import "OutgoingBuffer.h"
#import "PayloadStrings.h"
#import "ProgrammingError.h"
#import "TextBridge.h"

#include <Formats/CitationResolution.h>
#include <Formats/EventTable.h>
#include <Formats/RecordMarkup.h>
#include <Formats/ScanReply.h>
#include <Formats/ScanRequest.h>
#include <Formats/VerifiedMarker.h>

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

// Mellel waits until it is answered. If an exception ends the request first, this tells it so.
class CancelUnlessAnswered {
 public:
  explicit CancelUnlessAnswered(KorvoMellelAgent *agent) : agent_(agent) {}
  ~CancelUnlessAnswered() {
    const AtEndOfScope cancel([this] { [agent_ sendCancel]; });
  }
  CancelUnlessAnswered(const CancelUnlessAnswered &) = delete;
  CancelUnlessAnswered &operator=(const CancelUnlessAnswered &) = delete;

  void answered() { agent_ = nil; }

 private:
  KorvoMellelAgent *agent_;
};

}  // namespace

@interface KorvoMellelAgent (ScanSteps)
- (id<KorvoBibStyle>)styleChosenInDialog;
- (int32_t)actionChosenInWindow:(NSWindow *)window of:(KOMellelScanController *)controller;
- (NSData *)bibliographyForCitations:(NSArray *)citations inStyle:(id<KorvoBibStyle>)style;
- (ScanReplyContent)contentForCitations:(NSArray *)citations inStyle:(id<KorvoBibStyle>)style;
@end

@implementation KorvoMellelAgent (Scan)

- (void)handlePreliminaryScanEvent:(NSAppleEventDescriptor *)event
                    withReplyEvent:(NSAppleEventDescriptor *)__attribute__((unused)) reply {
  CancelUnlessAnswered cancel(self);
  NSData *data = [[event paramDescriptorForKeyword:keyDirectObject] data];
  if (data == nil && [data length] >= 10) {
    NSLog(@"KorvoMellelAgent.handlePreliminaryScanEvent: illegal payload");
    return;
  }
  documentID = formats::documentIDOfScanRequest(bytesOf(data));
  formats::PreliminaryScanRequest request = formats::decodePreliminaryScanRequest(bytesOf(data));
  NSArray *citations = stringsInPayload(data, std::move(request.citations));
  if (request.announcedCount != [citations count]) {
    reportProgrammingError(
        _cmd, self, countMismatchLine,
        [NSString stringWithFormat:@"Bad PRSQ message. count mismatch (%ld vs %ld)",
                                   static_cast<long>(request.announcedCount),
                                   static_cast<long>([citations count])]);
  }
  [self reportCitationResolution:citations];
  cancel.answered();
}

// Whether a citation matches does not change its record, so that every citation stays as its author
// wrote it until the final scan; the host is asked all the same.
- (void)reportCitationResolution:(NSArray *)citations {
  std::size_t size = formats::citationResolutionFixedSize;
  id<KorvoWordProcessorIntegrationAdapter> adapter = [KorvoMellelAgent adapter];
  id<KorvoLibrary> library = [[[adapter currentLibrary] retain] autorelease];
  const NSUInteger count = [citations count];
  CodeUnitReader codeUnitsOf;
  LoopPool pool;
  for (NSUInteger index = 0; index < count; ++index) {
    const std::u16string_view text = codeUnitsOf([citations objectAtIndex:index]);
    if (!text.empty()) {
      for (const std::u16string_view component : formats::citationComponents(text)) {
        [adapter referencesMatchingTag:[self scrubVerified:stringWithCodeUnits(component)]
                             inLibrary:library];
      }
    }
    size += formats::sizeOfString(formats::recordMarkupForComponents(text)) +
            formats::sizeOfString(text);
    pool.endTurn();
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
  CodeUnitReader codeUnitsOf;
  LoopPool pool;
  for (NSUInteger index = 0; index < count; ++index) {
    buffer.writeString(codeUnitsOf([citations objectAtIndex:index]));
    buffer.writeString(codeUnitsOf([markups objectAtIndex:index]));
    pool.endTurn();
  }
  pool.drain();
  return static_cast<int64_t>(buffer.written());
}

- (void)handleFinalScanEvent:(NSAppleEventDescriptor *)event
              withReplyEvent:(NSAppleEventDescriptor *)__attribute__((unused)) reply {
  CancelUnlessAnswered cancel(self);
  NSData *data = [[event paramDescriptorForKeyword:keyDirectObject] data];
  if (data == nil && [data length] >= 14) {
    NSLog(@"KorvoMellelAgent.handleFinalScanEvent: Illegal payload");
    return;
  }
  // Nothing was asked: no dialog may surprise the user, and Mellel must not wait.
  if (data == nil) {
    return;
  }
  documentID = formats::documentIDOfScanRequest(bytesOf(data));
  formats::FinalScanRequest request = formats::decodeFinalScanRequest(bytesOf(data));
  if (request.wantsBibliography) {
    generateBibliography = YES;
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
  cancel.answered();
}

- (void)sendScanReplyForCitations:(NSArray *)citations withStyle:(id<KorvoBibStyle>)style {
  // The user closed the dialog, or the host has no style at all: there is nothing to format with.
  if (style == nil) {
    [self sendCancel];
    [self activateMellel];
    return;
  }
  const ScanReplyContent content = [self contentForCitations:citations inStyle:style];
  OutgoingBuffer buffer([self allocateOutgoingBytes:content.size], content.size);
  if (buffer) {
    formats::PayloadWriter writer = buffer.writer();
    const int64_t written = [self assembleScanBuffer:writer
                            withCitationGroupStrings:content.groupStrings
                                             rtfData:content.rtfData
                                            forStyle:style];
    if (written != static_cast<int64_t>(content.size)) {
      reportProgrammingError(
          _cmd, self, scanReplySizeMismatchLine,
          @"Programming error - buffer size mismatch in sendScanReplyForCitations()");
    }
    [self sendAppleEventWithClass:mellelSignature
                          eventID:formats::answer::finalScan
                           buffer:buffer.bytes()
                       bufferSize:buffer.size()];
  } else {
    NSLog(@"KorvoMellelAgent.scanCitations: out of memory");
    [self sendCancel];
  }
  [self activateMellel];
}

- (void)handleCreateBibliographyEvent:(NSAppleEventDescriptor *)event
                       withReplyEvent:(NSAppleEventDescriptor *)reply {
  NSData *data = [[event paramDescriptorForKeyword:keyDirectObject] data];
  if (data == nil && [data length] >= 14) {
    NSLog(@"KorvoMellelAgent.handleCreateBibliographyEvent: Illegal payload");
    return;
  }
  documentID = 0;
  formats::LiveBibliographyRequest request = formats::decodeLiveBibliographyRequest(bytesOf(data));
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

- (void)sendLiveBiblioReplyEvent:(NSAppleEventDescriptor *)reply
                    forCitations:(NSArray *)citations
                       withStyle:(id<KorvoBibStyle>)style {
  if (style == nil) {
    [self sendCancel];
    [self activateMellel];
    return;
  }
  const ScanReplyContent content = [self contentForCitations:citations inStyle:style];
  OutgoingBuffer buffer([self allocateOutgoingBytes:content.size], content.size);
  if (buffer) {
    formats::PayloadWriter writer = buffer.writer();
    const int64_t written = [self assembleScanBuffer:writer
                            withCitationGroupStrings:content.groupStrings
                                             rtfData:content.rtfData
                                            forStyle:style];
    if (written != static_cast<int64_t>(content.size)) {
      reportProgrammingError(
          _cmd, self, liveReplySizeMismatchLine,
          @"Programming error - buffer size mismatch in sendLiveBiblioReplyEvent()");
    }
    NSAppleEventDescriptor *directObject =
        [NSAppleEventDescriptor descriptorWithDescriptorType:formats::textDescriptorType
                                                       bytes:buffer.bytes()
                                                      length:writer.stored()];
    // Where no reply is wanted, the reply event is a null descriptor, which takes no parameters.
    if ([reply descriptorType] != typeNull) {
      [reply setDescriptor:directObject forKeyword:keyDirectObject];
    }
  } else {
    NSLog(@"KorvoMellelAgent.sendLiveBiblioReplyEvent: out of memory");
    [self sendCancel];
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

// The host comes to the front for the dialog, and goes back to where it was, also when the dialog
// fails. Events that arrive meanwhile wait: the dialog's loop dispatches none of them.
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
    const AtEndOfScope goingBack([=] {
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

- (int32_t)actionChosenInWindow:(NSWindow *)window of:(KOMellelScanController *)controller {
  if (window == nil) {
    NSLog(@"KorvoMellelAgent.handleFinalScanEvent: The scan dialog could not be loaded");
    return KOMellelScanNoAction;
  }
  const AtEndOfScope closing([window] { [window close]; });
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
