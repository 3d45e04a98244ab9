// The category against the algorithms that it puts to use, over many attributed strings, and with
// attributed strings that misbehave.

#import "Support/AgentTest.h"

#include <Formats/PidginRTFReader.h>
#include <Formats/PidginRTFWriter.h>

#import <RTFTranslation.h>

#include <vector>

// Carries the attributes that a test gives it, and keeps the questions that it is asked. Half way
// through a question it can become another text.
@interface PatternedText : NSAttributedString {
 @public
  NSMutableString *text_;
  const std::vector<formats::PidginAttributes> *attributes_;
  std::string questions_;
  NSUInteger shrinkWhenAskedAbout_;
  NSUInteger shrunkLength_;
}
@end

@implementation PatternedText

// The designated initializer of an abstract class, whose own -init would call this one again.
- (instancetype)initWithString:(NSString *)text attributes:(NSDictionary *)attributes {
  (void)attributes;
  // GNUstep's mutable copy of a text with half a surrogate pair is empty.
  text_ = [[NSMutableString alloc] init];
  [text_ appendString:text];
  shrinkWhenAskedAbout_ = NSNotFound;
  return self;
}

- (void)dealloc {
  [text_ release];
  [super dealloc];
}

- (NSString *)string {
  return text_;
}

- (NSUInteger)length {
  return [text_ length];
}

- (NSDictionary *)attributesAtIndex:(NSUInteger)index effectiveRange:(NSRange *)range {
  if (range != nullptr) {
    *range = NSMakeRange(index, 1);
  }
  return [NSDictionary dictionary];
}

- (formats::PidginAttributes)askedFor:(char)style at:(NSUInteger)index {
  questions_ += style;
  if (index == shrinkWhenAskedAbout_ && [text_ length] > shrunkLength_) {
    [text_ deleteCharactersInRange:NSMakeRange(shrunkLength_, [text_ length] - shrunkLength_)];
  }
  return attributes_ == nullptr ? formats::PidginAttributes{} : attributes_->at(index);
}

- (BOOL)isBoldAtIndex:(NSUInteger)index {
  return [self askedFor:'b' at:index].bold ? YES : NO;
}
- (BOOL)isItalicizedAtIndex:(NSUInteger)index {
  return [self askedFor:'i' at:index].italic ? YES : NO;
}
- (BOOL)isUnderlinedAtIndex:(NSUInteger)index {
  return [self askedFor:'u' at:index].underline ? YES : NO;
}
- (BOOL)isSuperscriptAtIndex:(NSUInteger)index {
  return [self askedFor:'^' at:index].superscript ? YES : NO;
}
- (BOOL)isSubscriptAtIndex:(NSUInteger)index {
  return [self askedFor:'_' at:index].subscript ? YES : NO;
}

@end

// Answers -string with a copy, and becomes another text with the first question.
@interface CopiedText : PatternedText {
 @public
  NSString *becomesWhenAsked_;
}
@end

@implementation CopiedText

- (NSString *)string {
  return [NSString stringWithString:text_];
}

- (BOOL)isBoldAtIndex:(NSUInteger)index {
  [text_ setString:becomesWhenAsked_];
  return [super isBoldAtIndex:index];
}

@end

// Puts another string in the place of its own while it is asked about one unit; nobody else holds
// the old one.
@interface SwappedText : PatternedText {
 @public
  NSUInteger swapWhenAskedAbout_;
}
@end

@implementation SwappedText

- (BOOL)isBoldAtIndex:(NSUInteger)index {
  if (index == swapWhenAskedAbout_) {
    NSMutableString *next = [[NSMutableString alloc] initWithString:@"UVWXYZ"];
    [text_ release];
    text_ = next;
  }
  return [super isBoldAtIndex:index];
}

@end

namespace plugin_test {
namespace {

std::u16string units(NSString *text) {
  std::u16string result([text length], u'\0');
  [text getCharacters:reinterpret_cast<unichar *>(result.data())
                range:NSMakeRange(0, result.size())];
  return result;
}

// GNUstep makes no string with half a surrogate pair from characters, but appends one.
NSString *cocoa(std::u16string_view text) {
  NSMutableString *result = [NSMutableString stringWithCapacity:text.size()];
  for (const char16_t unit : text) {
    [result appendFormat:@"%C", static_cast<unichar>(unit)];
  }
  return result;
}

PatternedText *patterned(NSString *text) {
  return [[[PatternedText alloc] initWithString:text attributes:nil] autorelease];
}

formats::PidginAttributes attributesOf(unsigned pattern) {
  return {.bold = (pattern & 1) != 0,
          .italic = (pattern & 2) != 0,
          .underline = (pattern & 4) != 0,
          .superscript = (pattern & 8) != 0,
          .subscript = (pattern & 16) != 0};
}

std::string repeated(std::string_view text, std::size_t times) {
  std::string result;
  for (std::size_t time = 0; time < times; ++time) {
    result += text;
  }
  return result;
}

class RTFTranslationAgreement : public AgentTest {};

TEST_F(RTFTranslationAgreement, EveryChoiceOfAttributesForThreeCharactersIsWrittenAsInFormats) {
  const std::u16string text = u"A'é";
  PatternedText *subject = patterned(cocoa(text));
  std::vector<formats::PidginAttributes> attributes(text.size());
  subject->attributes_ = &attributes;
  for (unsigned pattern = 0; pattern < 1u << 15; ++pattern) {
    NSAutoreleasePool *pool = [[NSAutoreleasePool alloc] init];
    formats::PidginRTFWriter expected;
    for (std::size_t index = 0; index < text.size(); ++index) {
      attributes[index] = attributesOf(pattern >> (5 * index) & 31);
      expected.append(text[index], attributes[index]);
    }
    subject->questions_.clear();
    ASSERT_EQ(units([subject asPidginRTF]), expected.finish()) << pattern;
    ASSERT_EQ(subject->questions_, "biu^_biu^_biu^_") << pattern;
    [pool drain];
  }
}

TEST_F(RTFTranslationAgreement, EveryCodeUnitIsEscapedAsInFormats) {
  for (unsigned value = 0; value <= 0xFFFF; ++value) {
    NSAutoreleasePool *pool = [[NSAutoreleasePool alloc] init];
    const auto unit = static_cast<char16_t>(value);
    NSString *text = cocoa({&unit, 1});
    ASSERT_EQ([text length], 1u) << value;
    for (const BOOL escaping : {YES, NO}) {
      const std::u16string expected =
          formats::pidginRTF({&unit, 1}, escaping ? formats::ControlCharacters::escaped
                                                  : formats::ControlCharacters::raw);
      ASSERT_EQ(units([text asPidginRTFEscapingControlSequences:escaping]), expected) << value;
      ASSERT_EQ(units([text firstCharacterEscapedIfNeededIncludingControlCodes:escaping]), expected)
          << value;
    }
    [pool drain];
  }
}

TEST_F(RTFTranslationAgreement, LoneSurrogatesAreWrittenAsTheyAreAndReadUnchanged) {
  for (const std::u16string_view text :
       {std::u16string_view(u"\xD83D"), std::u16string_view(u"\xDE00"),
        std::u16string_view(u"a\xDE00\xD83D"
                            u"b"),
        std::u16string_view(u"\xD83D\xD83D\xDE00"), std::u16string_view(u"\xD83D\xDE00 \xD83D")}) {
    EXPECT_EQ(units([patterned(cocoa(text)) asPidginRTF]),
              formats::pidginRTF(text, formats::ControlCharacters::escaped));
    NSAttributedString *read = [NSAttributedString attributedStringFromRTF:cocoa(text)
                                                                attributes:nil];
    EXPECT_EQ(units([read string]), text);
  }
}

TEST_F(RTFTranslationAgreement, ATextThatShrinksUnderAQuestionEndsTheRTF) {
  for (const NSUInteger shrunkLength : {0, 2, 3}) {
    PatternedText *subject = patterned(@"abcdef");
    subject->shrinkWhenAskedAbout_ = 3;
    subject->shrunkLength_ = shrunkLength;
    EXPECT_EQ(str([subject asPidginRTF]), "abc") << shrunkLength;
    EXPECT_EQ(subject->questions_, repeated("biu^_", 4));
  }
}

TEST_F(RTFTranslationAgreement, ATextThatAnswersWithCopiesIsReadAsItIsNow) {
  CopiedText *subject = [[[CopiedText alloc] initWithString:@"abcdef" attributes:nil] autorelease];
  subject->becomesWhenAsked_ = @"ABCDEFGH";
  EXPECT_EQ(str([subject asPidginRTF]), "ABCDEFGH");
}

TEST_F(RTFTranslationAgreement, AStringOfTheSameLengthPutInItsPlaceIsReadFromThenOn) {
  for (const auto &[index, expected] :
       {std::pair(0u, "UVWXYZ"), std::pair(1u, "aVWXYZ"), std::pair(5u, "abcdeZ")}) {
    SwappedText *subject = [[[SwappedText alloc] initWithString:@"abcdef"
                                                     attributes:nil] autorelease];
    subject->swapWhenAskedAbout_ = index;
    EXPECT_EQ(str([subject asPidginRTF]), expected);
  }
}

TEST_F(RTFTranslationAgreement, ATextThatShrinksBehindTheQuestionIsReadToItsNewEnd) {
  PatternedText *subject = patterned(@"abcdef");
  subject->shrinkWhenAskedAbout_ = 1;
  subject->shrunkLength_ = 4;
  EXPECT_EQ(str([subject asPidginRTF]), "abcd");
  EXPECT_EQ(subject->questions_, repeated("biu^_", 4));
}

TEST_F(RTFTranslationAgreement, AHugeTextIsWrittenAndReadWhole) {
  const std::size_t length = 1'000'000;
  NSString *text = [@"" stringByPaddingToLength:length
                                     withString:@"It is plain. "
                                startingAtIndex:0];
  PatternedText *subject = patterned(text);
  EXPECT_TRUE([[subject asPidginRTF] isEqualToString:text]);
  EXPECT_EQ(subject->questions_.size(), 5 * length);
  EXPECT_TRUE([[[NSAttributedString attributedStringFromRTF:text
                                                 attributes:nil] string] isEqualToString:text]);
}

TEST_F(RTFTranslationAgreement, EveryShortInputIsReadAsInFormatsAndLogsNothing) {
  const std::u16string letters = u"{\\} \t\na";
  for (unsigned number = 0; number < 7 * 7 * 7 * 7 * 7; ++number) {
    NSAutoreleasePool *pool = [[NSAutoreleasePool alloc] init];
    std::u16string rtf;
    for (unsigned rest = number, place = 0; place < 5; ++place, rest /= 7) {
      rtf += letters[rest % 7];
    }
    NSString *text = [[NSAttributedString attributedStringFromRTF:cocoa(rtf)
                                                       attributes:nil] string];
    ASSERT_EQ(units(text), formats::textOfPidginRTF(rtf)) << number;
    [pool drain];
  }
  EXPECT_TRUE(log_->lines().empty());
}

}  // namespace
}  // namespace plugin_test
