#include "CocoaWriters.h"

#include "AttributedTexts.h"
#include "MixedText.h"

#import <HostContract/HostContract.h>

#import <AppKit/AppKit.h>
#import <RTFTranslation.h>

#include <memory>
#include <stdexcept>
#include <string>

namespace benchmarks {

namespace {

NSString *textOf(std::size_t units) {
  const std::u16string text = mixedText(units);
  return [NSString stringWithCharacters:reinterpret_cast<const unichar *>(text.data())
                                 length:text.size()];
}

// The same runs with what AppKit's writer understands.
NSAttributedString *textWithCocoaAttributes(NSString *text) {
  NSMutableAttributedString *result =
      [[[NSMutableAttributedString alloc] initWithString:text] autorelease];
  for (NSUInteger start = unitsOfARun; start < [text length]; start += 2 * unitsOfARun) {
    const unsigned styles = start / unitsOfARun / 2 % 8;
    NSMutableDictionary *attributes = [NSMutableDictionary dictionary];
    if ((styles & 1) != 0) {
      [attributes setObject:[NSNumber numberWithInt:1] forKey:NSUnderlineStyleAttributeName];
    }
    if ((styles & 6) != 0) {
      [attributes setObject:[NSNumber numberWithInt:(styles & 2) != 0 ? 1 : -1]
                     forKey:NSSuperscriptAttributeName];
    }
    [result setAttributes:attributes
                    range:NSMakeRange(start, MIN(unitsOfARun, [text length] - start))];
  }
  return [[result copy] autorelease];
}

struct Release {
  void operator()(NSAttributedString *text) const { [text release]; }
};

Job writer(const std::string &name, NSAttributedString *text,
           std::size_t (*write)(NSAttributedString *)) {
  const std::shared_ptr<NSAttributedString> held([text retain], Release());
  const auto work = [=] {
    NSAutoreleasePool *pool = [[NSAutoreleasePool alloc] init];
    const std::size_t size = write(held.get());
    [pool drain];
    if (size == 0) {
      throw std::runtime_error("an attributed text was not written");
    }
    return size;
  };
  return {name, [text length] * sizeof(unichar), work};
}

std::size_t writeByAppKit(NSAttributedString *text) {
  return [[text RTFFromRange:NSMakeRange(0, [text length]) documentAttributes:nil] length];
}

std::size_t writeByCategory(NSAttributedString *text) { return [[text asPidginRTF] length]; }

}  // namespace

std::vector<Job> cocoaWriters(std::size_t units) {
  NSString *const text = textOf(units);
  CheapText *const cheap = [[[CheapText alloc] initWithString:text attributes:nil] autorelease];
  return {writer("AppKit's RTF writer", textWithCocoaAttributes(text), writeByAppKit),
          writer("asPidginRTF, cheap predicates", cheap, writeByCategory),
          writer("asPidginRTF, predicates that look up attributes", textWithAttributes(text),
                 writeByCategory)};
}

}  // namespace benchmarks
