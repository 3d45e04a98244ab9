#import "PayloadStrings.h"

#import "TextBridge.h"

#include <Formats/RecordMarkup.h>

#include <utility>

@interface KorvoMellelPayloadStrings : NSArray {
 @public
  NSData *payload;
  std::vector<std::string_view> strings;
}
@end

@implementation KorvoMellelPayloadStrings

// NSArray's own would want a subclass that stores objects.
- (id)init {
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
 @public
  NSArray *citations;
}
@end

@implementation KorvoMellelRecordMarkups

- (id)init {
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
  KorvoMellelPayloadStrings *array = [[KorvoMellelPayloadStrings alloc] init];
  array->payload = [payload retain];
  array->strings = std::move(strings);
  return [array autorelease];
}

NSArray *recordMarkupsOfCitations(NSArray *citations) {
  KorvoMellelRecordMarkups *array = [[KorvoMellelRecordMarkups alloc] init];
  array->citations = [citations retain];
  return [array autorelease];
}
