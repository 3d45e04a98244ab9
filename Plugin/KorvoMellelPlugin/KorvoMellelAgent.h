// The plug-in's one class that a host deals with.
//
// Its class methods answer the host's questions and hold the host's adapter; its one instance
// receives every Apple Event that Mellel sends to the host process, asks the host through the
// adapter, and answers. It works on the main thread, inside the dispatch of an event.
//
// The sources are divided by what an event is about:
//   KorvoMellelAgent.mm                  life of the singleton, registration, the host's questions
//   KorvoMellelAgent+Transport.mm        sending events, Mellel's process, handshake
//   KorvoMellelAgent+CitationParsing.mm  citation texts to host citations, notices
//   KorvoMellelAgent+Scan.mm             preliminary scan, final scan, live bibliography
//   KorvoMellelAgent+Insertion.mm        insertion, lookup, retired requests
#pragma once

#import <HostContract/HostContract.h>

#import <Cocoa/Cocoa.h>

@interface KorvoMellelAgent : NSObject <KorvoWordProcessorIntegrationPlugin, KorvoPlugin> {
  // The Mellel document that the current conversation is about; echoed in answers.
  uint64_t documentID;
  // Whether the advice about the wrong library was given; once in the life of the agent.
  BOOL displayedWrongLibraryMessage;
  // Whether replies carry a bibliography. Set by the first request that asks for one, and never
  // cleared.
  BOOL generateBibliography;
}

// The singleton, made by the first message to the class. Owned by the class.
+ (KorvoMellelAgent *)defaultInstance;

@end
