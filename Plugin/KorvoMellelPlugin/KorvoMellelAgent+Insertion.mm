// What an author does with single citations: inserting one, opening the reference behind one. And
// the requests that older versions served.

#import "AtEndOfScope.h"
#import "ExceptionBoundary.h"
#import "HostArray.h"
#import "KorvoMellelAgent+Private.h"
#import "OutgoingBuffer.h"
#import "ProgrammingError.h"
#import "RefusedRequest.h"
#import "TextBridge.h"

#include <Formats/EventTable.h>
#include <Formats/Insertion.h>
#include <Formats/PayloadReader.h>
#include <Formats/RecordMarkup.h>
#include <Formats/RequestLimits.h>

namespace {

constexpr NSInteger insertionOutOfMemoryLine = 1082;
constexpr NSUInteger expectedTextLength = 100;

}  // namespace

@interface KorvoMellelAgent (InsertionSteps)
- (void)openCitedReference:(NSData *)data as:(SEL)handler;
- (void)postNotice:(NSString *)message;
@end

@implementation KorvoMellelAgent (Insertion)

- (void)handleFindStringEvent:(NSAppleEventDescriptor *)__attribute__((unused)) event
               withReplyEvent:(NSAppleEventDescriptor *)reply {
  // Also where there is nothing to insert, or the host failed: it is all that Mellel then hears.
  const AtEndOfScope activation([self] { [self activateMellel]; });
  const ExceptionBoundary boundary("handleFindStringEvent", formats::request::insertCitation,
                                   reply);
  boundary.holds([&] {
    NSString *text = [self assembleSelectedCitations];
    if (text != nil && [text length] > 0) {
      [self insertCitation:text];
    }
  });
}

// A reference without a tag leaves its place empty, so that the author sees where one is missing.
- (NSMutableString *)assembleSelectedCitations {
  id<KorvoWordProcessorIntegrationAdapter> adapter = [KorvoMellelAgent adapter];
  NSArray *references = [adapter selectedReferences];
  const BOOL several = [references count] > 1;
  NSMutableString *text = [NSMutableString stringWithCapacity:expectedTextLength];
  BOOL tagIsMissing = NO;
  if (several) {
    [text appendString:@"{"];
  }
  for (NSUInteger index = 0; index < [references count]; ++index) {
    id<KorvoReference> reference = objectAt(references, index);
    NSLog(@"Mellel: UUID of selected reference: %@", [reference UUID]);
    NSString *tag = [adapter inTextCitationTagForReference:reference];
    if (tag == nil || [tag length] == 0) {
      tagIsMissing = YES;
    } else {
      [text appendString:tag];
    }
    [text appendString:@";"];
  }
  if ([text length] > 0) {
    [text deleteCharactersInRange:NSMakeRange([text length] - 1, 1)];
  }
  if (several) {
    [text appendString:@"}"];
  }
  if (tagIsMissing) {
    [self postNullTagNotice];
  }
  return text;
}

- (void)insertCitation:(NSString *)citation {
  const std::u16string text = codeUnits(citation);
  const std::u16string markup = formats::recordMarkupForInsertion(text);
  const std::size_t size = formats::sizeOfInsertion(text, markup);
  OutgoingBuffer buffer([self allocateOutgoingBytes:size], size);
  if (!buffer) {
    reportProgrammingError(_cmd, self, insertionOutOfMemoryLine,
                           @"KOKorvoMellelAgent.insertCitation out of memory");
    return;
  }
  formats::PayloadWriter writer = buffer.writer();
  formats::writeInsertion(writer, text, markup);
  const OSStatus status =
      [self sendAppleEventWithClass:formats::insertionEventClass
                            eventID:formats::answer::citation
                     descriptorType:formats::bufferDescriptorType
                            payload:std::string_view(buffer.bytes(), buffer.size())];
  if (status != noErr) {
    NSBeep();
  }
}

- (void)postNullTagNotice {
  [self postNotice:@"One or more of the selected Korvo references has neither a \"Citation "
                   @"identifier\" field nor sufficient information (author,year) to create one."];
}

// Nothing sends it, on purpose: an empty selection brings Mellel back to the front without a word,
// and the user sees that nothing was inserted. The notice stays in the agent's vocabulary.
- (void)postNoSelectionNotice {
  [self postNotice:@"Please select one or more references in your Korvo collections before "
                   @"attempting to insert into Mellel."];
}

- (void)handleFindCitationEvent:(NSAppleEventDescriptor *)event
                 withReplyEvent:(NSAppleEventDescriptor *)reply {
  const ExceptionBoundary boundary("handleFindCitationEvent", formats::request::findCitation,
                                   reply);
  const SEL handler = _cmd;
  boundary.holds([&] {
    [self openCitedReference:[[event paramDescriptorForKeyword:keyDirectObject] data] as:handler];
  });
}

// Retired without a word. There is nothing in it that an exception could leave.
- (void)handleImportCitationsEvent:(NSAppleEventDescriptor *)__attribute__((unused)) event
                    withReplyEvent:(NSAppleEventDescriptor *)__attribute__((unused)) reply {
}

- (void)handleScanCitationsEvent:(NSAppleEventDescriptor *)__attribute__((unused)) event
                  withReplyEvent:(NSAppleEventDescriptor *)reply {
  const ExceptionBoundary boundary("handleScanCitationsEvent", formats::request::scanCitations,
                                   reply);
  boundary.holds([] {
    // With the two blanks, by which the line is known.
    NSLog(
        @"KorvoMellelAgent.handleScanCitation:  Got a Rmci event - this is obsolete and no longer "
        @"supported.");
  });
}

@end

@implementation KorvoMellelAgent (InsertionSteps)

- (void)openCitedReference:(NSData *)data as:(SEL)handler {
  if (data == nil) {
    return;
  }
  formats::RequestMeasure measure([data length]);
  const std::string_view group = formats::PayloadReader(bytesOf(data)).readString();
  measure.addCitation(group);
  if (const auto exceeded = measure.exceeded()) {
    logRefusal(handler, *exceeded);
    // No scan was asked for that could be cancelled; the user goes back to the document.
    [self activateMellel];
    return;
  }
  NSString *text = stringWithUTF8(group);
  NSArray *groups = [self citationGroupsWithCitationStringArray:[NSArray arrayWithObject:text]];
  if ([groups count] != 1) {
    return;
  }
  NSArray *citations = [[groups objectAtIndex:0] citations];
  id<KorvoCitation> citation = [citations count] > 0 ? objectAt(citations, 0) : nil;
  if (citation == nil) {
    return;
  }
  id<KorvoReference> reference = [citation reference];
  if (reference != nil) {
    [[KorvoMellelAgent adapter] displayEditorForReference:reference];
  }
  [self activateMellel];
}

- (void)postNotice:(NSString *)message {
  id<KorvoWordProcessorIntegrationAdapter> adapter = [KorvoMellelAgent adapter];
  NSString *header = [self localizedText:@"Notice for Mellel Users"];
  NSString *text = [NSString stringWithFormat:@"%@\n", [self localizedText:message]];
  NSDictionary *attributes = ofClass([NSDictionary class], [adapter bodyTextAttributes]);
  NSAttributedString *summary =
      [[[NSAttributedString alloc] initWithString:text attributes:attributes] autorelease];
  [adapter postNoticeWithHeader:header attributedSummary:summary];
}

@end
