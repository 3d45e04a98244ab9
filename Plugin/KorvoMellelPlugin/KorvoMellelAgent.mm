#import "ExceptionBoundary.h"
#import "KorvoMellelAgent+Private.h"
#import "Translation.h"

#include <Formats/EventTable.h>

const OSType mellelSignature = formats::mellelSignature;

static NSString *const REGISTRATION_NAME = @"Mellel";

static KorvoMellelAgent *instance = nil;
static id<KorvoWordProcessorIntegrationAdapter> adapter = nil;

@implementation KorvoMellelAgent

// The handlers must be there before Mellel can reach the host, and the host knows nothing of
// them: so they are installed with the first message to the class. The preferences follow at
// once, for a Mellel that has been waiting for the host.
+ (void)initialize {
  struct Registration {
    AEEventID eventID;
    SEL selector;
  };
  const Registration registrations[] = {
      {formats::request::insertCitation, @selector(handleFindStringEvent:withReplyEvent:)},
      {formats::request::findCitation, @selector(handleFindCitationEvent:withReplyEvent:)},
      {formats::request::handshake, @selector(handleHandshakeEvent:withReplyEvent:)},
      {formats::request::liveBibliography, @selector(handleCreateBibliographyEvent:
                                                                    withReplyEvent:)},
      {formats::request::preliminaryScan, @selector(handlePreliminaryScanEvent:withReplyEvent:)},
      {formats::request::scanCitations, @selector(handleScanCitationsEvent:withReplyEvent:)},
      {formats::request::finalScan, @selector(handleFinalScanEvent:withReplyEvent:)},
      {formats::request::importCitations, @selector(handleImportCitationsEvent:withReplyEvent:)},
  };
  ExceptionBoundary("initialize").holds([&] {
    KorvoMellelAgent *agent = [self defaultInstance];
    for (const Registration &registration : registrations) {
      [[NSAppleEventManager sharedAppleEventManager] setEventHandler:agent
                                                         andSelector:registration.selector
                                                       forEventClass:mellelSignature
                                                          andEventID:registration.eventID];
    }
    [agent sendPreferences];
  });
}

+ (KorvoMellelAgent *)defaultInstance {
  if (instance == nil) {
    instance = [[self alloc] init];
  }
  return instance;
}

// Lives as long as the request that asks for it, even if the host replaces it meanwhile.
+ (id<KorvoWordProcessorIntegrationAdapter>)adapter {
  return [[adapter retain] autorelease];
}

+ (void)setAdapter:(id<KorvoWordProcessorIntegrationAdapter>)newAdapter {
  [newAdapter retain];
  [adapter release];
  adapter = newAdapter;
}

+ (NSString *)registrationName {
  return REGISTRATION_NAME;
}

+ (int64_t)version {
  return 2;
}

+ (NSString *)protocolType {
  return @"Word processor (custom interface)";
}

+ (void)configure {
}

+ (BOOL)isConfigurable {
  return NO;
}

+ (BOOL)isAvailable {
  return YES;
}

+ (BOOL)isEnabledByDefault {
  return YES;
}

- (id)init {
  self = [super init];
  if (self != nil) {
    displayedWrongLibraryMessage = NO;
    documentID = 0;
    generateBibliography = NO;
  }
  return self;
}

- (void)dealloc {
  if (instance != nil) {
    ExceptionBoundary("dealloc").holds([&] { [self unregisterMellelEventHandlers]; });
  }
  instance = nil;
  [super dealloc];
}

// Nothing is left to do: the handlers are installed by +initialize.
- (void)start {
}

- (id)citationStringForIDList:(id)__attribute__((unused)) identifiers
                    withStyle:(id)__attribute__((unused)) style
                   atPosition:(int32_t)__attribute__((unused)) position {
  NSLog(@"KorvoMellelAgent.citationStringForIDList: currently unsupported.");
  return @"";
}

- (id)bibliographyElementsForIDList:(id)__attribute__((unused)) identifiers
                          withStyle:(id)__attribute__((unused)) style
                 returningCitations:(BOOL)__attribute__((unused)) citationsWanted
              returningBibliography:(BOOL)__attribute__((unused)) bibliographyWanted {
  NSLog(@"KorvoMellelAgent.bibliographyElementsForIDList: currently unsupported.");
  return @"";
}

@end

@implementation KorvoMellelAgent (Lifecycle)

// The four oldest, and only these, on purpose: the others stay installed for the next agent, which
// puts its own in their place. Until then they point at an agent that is gone.
- (void)unregisterMellelEventHandlers {
  const AEEventID eventIDs[] = {formats::request::scanCitations, formats::request::insertCitation,
                                formats::request::findCitation, formats::request::handshake};
  for (const AEEventID eventID : eventIDs) {
    [[NSAppleEventManager sharedAppleEventManager] removeEventHandlerForEventClass:mellelSignature
                                                                        andEventID:eventID];
  }
}

- (NSString *)localizedText:(NSString *)key {
  return translatedText(key, @"Plugin");
}

@end
