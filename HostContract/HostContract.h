// The whole contract between a Korvo host and the word-processor plug-in.
//
// A host author reads the headers in this order:
//   KorvoPlugin.h            what the host may ask of the plug-in's class
//   KorvoAdapter.h           the service object that the host hands to the plug-in
//   KorvoHostObjects.h       libraries, references, citations, groups and styles
//   KorvoAttributePredicates.h  what the host adds to every attributed string
//
// All of it is messaged on the main thread only. Objects follow Cocoa's rules of
// ownership: what a method returns is borrowed, unless its name says otherwise.
#pragma once

#import "KorvoAdapter.h"
#import "KorvoAttributePredicates.h"
#import "KorvoHostObjects.h"
#import "KorvoPlugin.h"
