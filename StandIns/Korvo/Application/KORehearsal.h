// Formats a few references at a time while nobody waits for the program.
//
// The first document after the start would take two to three times as long as a later one: the
// JavaScript machine, its scripts and the style have to be loaded, and its compiler translates
// only what has run for a while. So the host rehearses with its own library in the style that is
// most likely asked for. Each turn takes a fraction of a second, so that a request that arrives
// meanwhile hardly waits, and after a few hundred references it is over.
#pragma once

#import <StandIns/Korvo/Adapter/KOLibrary.h>
#import <StandIns/Korvo/Adapter/StyleShelf.h>

#import <Foundation/Foundation.h>

#include <vector>

@interface KORehearsal : NSObject {
  korvo::adapter::StyleShelf *shelf_;  // not owned
  KOLibrary *library_;
  std::vector<korvo::library::ReferenceRow> rows_;
  std::size_t next_;
  BOOL isOver_;
}
- (id)initWithLibrary:(KOLibrary *)library styles:(korvo::adapter::StyleShelf &)shelf;
// Once the program has had nothing to do for a second. Goes on by itself.
- (void)start;
- (BOOL)isOver;
// To be called before the library or the styles go away.
- (void)stop;
@end
