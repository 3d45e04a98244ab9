#import "PayloadStrings.h"

#import "TextBridge.h"

#include <Formats/RecordMarkup.h>

#include <utility>

@interface KorvoMellelPayloadStrings : NSArray {
  NSData *payload;
  std::vector<std::string_view> strings;
}
- (instancetype)initWithStrings:(std::vector<std::string_view>)views inPayload:(NSData *)data;
@end

@implementation KorvoMellelPayloadStrings

- (instancetype)initWithStrings:(std::vector<std::string_view>)views inPayload:(NSData *)data {
  self = [super init];
  if (self != nil) {
    payload = [data retain];
    strings = std::move(views);
  }
  return self;
}

- (void)dealloc {
  [payload release];
  [super dealloc];
}

- (NSUInteger)count {
  return strings.size();
}

- (id)objectAtIndex:(NSUInteger)index {
  if (index >= strings.size()) {
    [NSException raise:NSRangeException
                format:@"No string %lu of a payload", static_cast<unsigned long>(index)];
  }
  return stringWithUTF8(strings[index]);
}

@end

@interface KorvoMellelRecordMarkups : NSArray {
  NSArray *citations;
}
- (instancetype)initWithCitations:(NSArray *)texts;
@end

@implementation KorvoMellelRecordMarkups

- (instancetype)initWithCitations:(NSArray *)texts {
  self = [super init];
  if (self != nil) {
    citations = [texts retain];
  }
  return self;
}

- (void)dealloc {
  [citations release];
  [super dealloc];
}

- (NSUInteger)count {
  return [citations count];
}

- (id)objectAtIndex:(NSUInteger)index {
  return stringWithCodeUnits(
      formats::recordMarkupForComponents(codeUnits([citations objectAtIndex:index])));
}

@end

NSArray *stringsInPayload(NSData *payload, std::vector<std::string_view> strings) {
  return [[[KorvoMellelPayloadStrings alloc] initWithStrings:std::move(strings)
                                                   inPayload:payload] autorelease];
}

NSArray *recordMarkupsOfCitations(NSArray *citations) {
  return [[[KorvoMellelRecordMarkups alloc] initWithCitations:citations] autorelease];
}
