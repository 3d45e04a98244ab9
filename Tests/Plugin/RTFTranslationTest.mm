// Pidgin RTF on Cocoa's own classes, as any caller in the host process gets it.

#import "Support/AgentTest.h"

#import <RTFTranslation.h>

namespace {
// Which characters carry which style: letters "b", "i", "u", "^", "_" for each index.
std::vector<std::string> styles;
std::vector<std::string> asked;

BOOL carries(NSUInteger index, char style) {
  asked.push_back(std::string(1, style) + std::to_string(index));
  return index < styles.size() && styles[index].find(style) != std::string::npos ? YES : NO;
}
}  // namespace

// The host's part, which the plug-in's bundle finds on the class.
@implementation NSAttributedString (KorvoAttributePredicates)
- (BOOL)isBoldAtIndex:(NSUInteger)index {
  return carries(index, 'b');
}
- (BOOL)isItalicizedAtIndex:(NSUInteger)index {
  return carries(index, 'i');
}
- (BOOL)isUnderlinedAtIndex:(NSUInteger)index {
  return carries(index, 'u');
}
- (BOOL)isSuperscriptAtIndex:(NSUInteger)index {
  return carries(index, '^');
}
- (BOOL)isSubscriptAtIndex:(NSUInteger)index {
  return carries(index, '_');
}
@end

// A text that has lost its characters.
@interface TextWithoutString : NSAttributedString
@end

@implementation TextWithoutString
- (id)init {
  return self;
}
- (NSUInteger)length {
  return 2;
}
- (NSString *)string {
  return nil;
}
- (NSDictionary *)attributesAtIndex:(NSUInteger)__attribute__((unused)) index
                     effectiveRange:(NSRange *)__attribute__((unused)) range {
  return nil;
}
@end

namespace plugin_test {
namespace {

using testing::ElementsAre;

class RTFTranslation : public AgentTest {
 protected:
  static std::string written(std::string_view text,
                             std::vector<std::string> stylesOfCharacters = {}) {
    styles = std::move(stylesOfCharacters);
    asked.clear();
    return str([[[[NSAttributedString alloc] initWithString:ns(text)] autorelease] asPidginRTF]);
  }
  static std::string escaped(NSString *text, BOOL controlSequences) {
    return str([text asPidginRTFEscapingControlSequences:controlSequences]);
  }
  static std::string firstEscaped(NSString *text, BOOL controlCodes) {
    return str([text firstCharacterEscapedIfNeededIncludingControlCodes:controlCodes]);
  }
  static std::string read(std::string_view rtf) {
    return str([[NSAttributedString attributedStringFromRTF:ns(rtf) attributes:nil] string]);
  }
};

TEST_F(RTFTranslation, OfATextWithoutCharactersIsEmpty) {
  EXPECT_EQ(str([[[[TextWithoutString alloc] init] autorelease] asPidginRTF]), "");
}

TEST_F(RTFTranslation, EmptyTextIsEmptyInAllThree) {
  EXPECT_EQ(written(""), "");
  EXPECT_EQ(escaped(@"", YES), "");
  EXPECT_EQ(firstEscaped(@"", YES), "");
}

TEST_F(RTFTranslation, BracesAreEscapedByTheWriterAndLeftRawOnRequest) {
  EXPECT_EQ(written("a{b}"), "a\\'7b b\\'7d ");
  EXPECT_EQ(escaped(@"a{b}", NO), "a{b}");
  EXPECT_EQ(escaped(@"a{b}\\", YES), "a\\'7b b\\'7d \\'5c ");
}

TEST_F(RTFTranslation, ApostropheHasNoTrailingBlank) { EXPECT_EQ(written("it's"), "it\\'27s"); }

TEST_F(RTFTranslation, LineFeedIsEscapedAndOtherControlCodesAreRaw) {
  EXPECT_EQ(written("a\nb\r\tc"), "a\\\nb\r\tc");
}

TEST_F(RTFTranslation, OuterAttributesReopenInnerGroups) {
  EXPECT_EQ(written("AB", {"b", "bi"}), "{\\b A}{\\i {\\b B}}");
  EXPECT_EQ(written("AB", {"ub", "b"}), "{\\ul {\\b A}}{\\b B}");
  EXPECT_EQ(written("A", {"biu"}), "{\\ul {\\i {\\b A}}}");
  EXPECT_EQ(written("xy", {"^", "_"}), "{\\super x}{\\sub y}");
  EXPECT_EQ(written("x", {"^_"}), "{\\super {\\sub x}}");
}

TEST_F(RTFTranslation, PredicatesAreAskedForEveryCodeUnitInOrder) {
  written("a😀");
  EXPECT_THAT(asked, ElementsAre("b0", "i0", "u0", "^0", "_0", "b1", "i1", "u1", "^1", "_1", "b2",
                                 "i2", "u2", "^2", "_2"));
}

TEST_F(RTFTranslation, EveryCodeUnitAboveASCIIIsEscapedByItself) {
  EXPECT_EQ(written("\u00A0"), "\\uc0\\u160 ");
  EXPECT_EQ(written("\uFFFD"), "\\uc0\\u-3 ");
  EXPECT_EQ(written("é’"), "\\uc0\\u233 \\uc0\\u8217 ");
  EXPECT_EQ(written("😀"), "\\uc0\\u-10179 \\uc0\\u-8704 ");
  const unichar units[] = {0x7FFF, 0x8000, 0xFFFF};
  EXPECT_EQ(escaped([NSString stringWithCharacters:units length:3], NO),
            "\\uc0\\u32767 \\uc0\\u-32768 \\uc0\\u-1 ");
}

TEST_F(RTFTranslation, HalfOfASurrogatePairIsEscapedByItself) {
  NSString *half = [ns("😀") substringWithRange:NSMakeRange(1, 1)];
  ASSERT_EQ([half length], 1u);
  EXPECT_EQ(escaped(half, YES), "\\uc0\\u-8704 ");
  EXPECT_EQ(firstEscaped(half, YES), "\\uc0\\u-8704 ");
}

TEST_F(RTFTranslation, FirstCharacterAloneIsEscapedAndAnUnescapedReceiverReturnedWhole) {
  EXPECT_EQ(firstEscaped(@"{}", YES), "\\'7b ");
  EXPECT_EQ(firstEscaped(@"{}", NO), "{}");
  EXPECT_EQ(firstEscaped(@"abc", YES), "abc");
  EXPECT_EQ(firstEscaped(@"éa", NO), "\\uc0\\u233 ");
  EXPECT_EQ(firstEscaped(@"\nx", YES), "\\\n");
  EXPECT_EQ(firstEscaped(@"'x", YES), "\\'27");
}

TEST_F(RTFTranslation, ReaderKeepsTextAndDropsFormatting) {
  EXPECT_EQ(read("{\\b bold} and {\\i italic}"), "bold and italic");
  EXPECT_EQ(read("it\\rquote s"), "it' s");
  EXPECT_EQ(read("{\\rquote}"), "'");
  EXPECT_EQ(read("a\\\\b"), "a\\b");
  EXPECT_EQ(read("caf\\uc0\\u233 "), "caf");
  EXPECT_EQ(read("\\'7b x\\'7d "), "x");
  EXPECT_EQ(read("it\\'27s"), "it");
  EXPECT_EQ(read("\\\nlost kept"), "kept");
  EXPECT_EQ(read("{\\bx}"), "");
  EXPECT_EQ(read("a\nb\rc\td"), "ab\rc\td");
  EXPECT_EQ(read(""), "");
  EXPECT_EQ(read("abc\\b"), "abc");
  EXPECT_TRUE(log_->lines().empty());
}

TEST_F(RTFTranslation, ReaderTakesWhatFollowsTheCountOfFallbackCharactersForText) {
  EXPECT_EQ(read("\\uc1x y"), "x y");
}

TEST_F(RTFTranslation, ReaderGivesTheWholeTextTheAttributes) {
  NSDictionary *attributes = [NSDictionary dictionaryWithObject:@"x" forKey:@"role"];
  NSAttributedString *text = [NSAttributedString attributedStringFromRTF:@"{\\b bold} plain"
                                                              attributes:attributes];
  NSRange range;
  EXPECT_TRUE([[text attributesAtIndex:0 effectiveRange:&range] isEqual:attributes]);
  EXPECT_EQ(range.length, [text length]);
}

TEST_F(RTFTranslation, ReaderWithoutAttributesOrInputNeverFails) {
  NSAttributedString *text = [NSAttributedString attributedStringFromRTF:@"a" attributes:nil];
  EXPECT_EQ([[text attributesAtIndex:0 effectiveRange:nullptr] count], 0u);
  EXPECT_EQ([[NSAttributedString attributedStringFromRTF:nil attributes:nil] length], 0u);
}

}  // namespace
}  // namespace plugin_test
