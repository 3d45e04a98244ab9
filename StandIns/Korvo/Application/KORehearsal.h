// Formats a few references at a time while nobody waits for the program.
//
// The first document after the start would take two to four times as long as a later one: the
// JavaScript machine, its scripts and the style have to be loaded, its compiler translates only
// what has run for a while, and nothing is remembered of any work. So the host rehearses with its
// own library, in the default style or the first favorite. In a second and a third one as well it
// took a minute of the processor and half a gigabyte of memory. Each turn takes some seven
// milliseconds, so that a request that arrives meanwhile hardly waits. It is over once the style
// has seen the library, or its first thousands of references, and as soon as somebody changes the
// library.
#pragma once

#import <StandIns/Korvo/Adapter/KOLibrary.h>
#import <StandIns/Korvo/Adapter/StyleShelf.h>

#import <Foundation/Foundation.h>

#include <optional>
#include <string>
#include <vector>

@interface KORehearsal : NSObject {
  korvo::adapter::StyleShelf *shelf_;  // not owned
  KOLibrary *library_;
  std::string style_;
  std::vector<korvo::library::ReferenceRow> rows_;
  std::optional<korvo::library::Library::Version> version_;  // that the rows are of
  std::size_t next_;
  BOOL isOver_;
}
- (id)initWithLibrary:(KOLibrary *)library styles:(korvo::adapter::StyleShelf &)shelf;
// Once the program has had nothing to do for a moment. Goes on by itself.
- (void)start;
- (BOOL)isOver;
// To be called before the library or the styles go away.
- (void)stop;
@end
