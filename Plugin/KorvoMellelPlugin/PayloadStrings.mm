#import "PayloadStrings.h"

#import "TextBridge.h"

#include <Formats/RecordMarkup.h>
#include <Formats/Unicode.h>

#include <utility>

TextReader::TextReader(NSArray *array) : array_(array) {
  if ([array respondsToSelector:@selector(codeUnitsAtIndex:)]) {
    texts_ = static_cast<id>(array);
  }
}

std::u16string_view TextReader::operator()(NSUInteger index) {
  units_ =
      texts_ != nil ? [texts_ codeUnitsAtIndex:index] : codeUnits([array_ objectAtIndex:index]);
  return units_;
}

@interface KorvoMellelPayloadStrings : NSArray <KorvoMellelTexts> {
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

- (std::string_view)bytesAtIndex:(NSUInteger)index {
  if (index >= strings.size()) {
    [NSException raise:NSRangeException
                format:@"No string %lu of a payload", static_cast<unsigned long>(index)];
  }
  return strings[index];
}

- (std::u16string)codeUnitsAtIndex:(NSUInteger)index {
  return formats::decodeUTF8([self bytesAtIndex:index]);
}

- (id)objectAtIndex:(NSUInteger)index {
  return stringWithUTF8([self bytesAtIndex:index]);
}

@end

@interface KorvoMellelRecordMarkups : NSArray <KorvoMellelTexts> {
  NSArray *citations;
  TextReader citationAt;
}
- (instancetype)initWithCitations:(NSArray *)texts;
@end

@implementation KorvoMellelRecordMarkups

- (instancetype)initWithCitations:(NSArray *)texts {
  self = [super init];
  if (self != nil) {
    citations = [texts retain];
    citationAt = TextReader(citations);
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

- (std::u16string)codeUnitsAtIndex:(NSUInteger)index {
  return formats::recordMarkupForComponents(citationAt(index));
}

- (id)objectAtIndex:(NSUInteger)index {
  return stringWithCodeUnits([self codeUnitsAtIndex:index]);
}

@end

NSArray *stringsInPayload(NSData *payload, std::vector<std::string_view> strings) {
  return [[[KorvoMellelPayloadStrings alloc] initWithStrings:std::move(strings)
                                                   inPayload:payload] autorelease];
}

NSArray *recordMarkupsOfCitations(NSArray *citations) {
  return [[[KorvoMellelRecordMarkups alloc] initWithCitations:citations] autorelease];
}
