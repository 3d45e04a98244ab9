#import "AdapterFixture.h"

#import <HostContract/HostContract.h>
#import <StandIns/Korvo/Adapter/AttributedCitations.h>
#import <StandIns/Korvo/Adapter/PidginRTFText.h>
#import <StandIns/Korvo/Adapter/StringConversion.h>

#include <gtest/gtest.h>

using korvo::engine::Bibliography;
using korvo::engine::FormattedText;
using Piece = korvo::engine::Run;
using korvo::adapter::attributedBibliography;
using korvo::adapter::attributedText;
using korvo::engine::VerticalPosition;
using korvo_test::markup;
using korvo_test::utf8;

// A text for which a plug-in brings a conversion of its own.
@interface ConvertibleText : NSAttributedString
- (NSString *)asPidginRTF;
@end

@implementation ConvertibleText
// The designated initializer of an abstract class, whose own -init would call this one again.
- (instancetype)initWithString:(NSString *)text attributes:(NSDictionary *)attributes {
  (void)text;
  (void)attributes;
  return self;
}
- (NSString *)string {
  return @"plain";
}
- (NSDictionary *)attributesAtIndex:(NSUInteger)index effectiveRange:(NSRange *)range {
  if (range != nullptr) {
    *range = NSMakeRange(index, 1);
  }
  return [NSDictionary dictionary];
}
- (NSString *)asPidginRTF {
  return @"the plug-in's";
}
@end

namespace {

class AttributedText : public korvo_test::AdapterFixture {};

Bibliography twoEntries() {
  Bibliography bibliography;
  bibliography.entries = {
      {.itemId = "a",
       .firstField = std::nullopt,
       .text = {{Piece{
                     .text = u"First ",
                 },
                 Piece{.text = u"title", .italic = true}}}},
      {.itemId = "b", .firstField = std::nullopt, .text = {{Piece{.text = u"Second"}}}}};
  return bibliography;
}

NSParagraphStyle *paragraphAt(NSAttributedString *text, NSUInteger index) {
  return [text attribute:NSParagraphStyleAttributeName atIndex:index effectiveRange:nullptr];
}

}  // namespace

TEST_F(AttributedText, EveryLookBecomesAnAttributeThatThePredicatesSee) {
  const FormattedText text{{Piece{.text = u"plain "}, Piece{.text = u"b", .bold = true},
                            Piece{.text = u"i", .italic = true},
                            Piece{.text = u"u", .underline = true},
                            Piece{.text = u"x", .bold = true, .italic = true},
                            Piece{.text = u"2", .verticalPosition = VerticalPosition::superscript},
                            Piece{.text = u"3", .verticalPosition = VerticalPosition::subscript},
                            Piece{.text = u"ü𝄞", .smallCaps = true}}};
  EXPECT_EQ(markup(attributedText(text)),
            "plain <b>b</b><i>i</i><u>u</u><i><b>x</b></i><sup>2</sup><sub>3</sub>ü𝄞");
}

TEST_F(AttributedText, NoRunsAreAnEmptyText) {
  ASSERT_NE(attributedText({}), nil);
  EXPECT_EQ([attributedText({}) length], 0U);
}

TEST_F(AttributedText, PredicatesAnswerExactlyYesOrNo) {
  NSAttributedString *text =
      attributedText({{Piece{.text = u"x",
                             .bold = true,
                             .italic = true,
                             .underline = true,
                             .verticalPosition = VerticalPosition::superscript}}});
  EXPECT_EQ(static_cast<int>([text isBoldAtIndex:0]), 1);
  EXPECT_EQ(static_cast<int>([text isItalicizedAtIndex:0]), 1);
  EXPECT_EQ(static_cast<int>([text isUnderlinedAtIndex:0]), 1);
  EXPECT_EQ(static_cast<int>([text isSuperscriptAtIndex:0]), 1);
  EXPECT_EQ(static_cast<int>([text isSubscriptAtIndex:0]), 0);
}

TEST_F(AttributedText, PredicatesSayNoToTextWithoutOrWithOddAttributes) {
  NSAttributedString *bare = [[[NSAttributedString alloc] initWithString:@"x"] autorelease];
  NSAttributedString *odd = [[[NSAttributedString alloc]
      initWithString:@"x"
          attributes:[NSDictionary dictionaryWithObject:[NSColor redColor]
                                                 forKey:NSSuperscriptAttributeName]] autorelease];
  for (NSAttributedString *text : {bare, odd}) {
    EXPECT_EQ(markup(text), "x");
  }
}

TEST_F(AttributedText, AnEntryOfTheBibliographyIsAParagraph) {
  NSAttributedString *text = attributedBibliography(twoEntries());
  EXPECT_EQ(markup(text), "First <i>title</i>\nSecond");
}

TEST_F(AttributedText, AHangingIndentMovesAllLinesButTheFirst) {
  Bibliography bibliography = twoEntries();
  bibliography.hangingIndent = true;
  NSParagraphStyle *style = paragraphAt(attributedBibliography(bibliography), 0);
  EXPECT_EQ([style firstLineHeadIndent], 0);
  EXPECT_EQ([style headIndent], 36);
}

TEST_F(AttributedText, AFirstFieldStandsInAColumnOfItsOwn) {
  Bibliography bibliography = twoEntries();
  bibliography.secondFieldAlign = korvo::engine::SecondFieldAlign::flush;
  bibliography.firstFieldCharacters = 4;
  bibliography.entries[0].firstField = FormattedText{{Piece{.text = u"[10]"}}};
  NSAttributedString *text = attributedBibliography(bibliography);
  EXPECT_EQ(markup(text), "[10]\tFirst <i>title</i>\nSecond");
  NSParagraphStyle *style = paragraphAt(text, 0);
  ASSERT_EQ([[style tabStops] count], 1U);
  EXPECT_EQ([[[style tabStops] objectAtIndex:0] location], [style headIndent]);
  EXPECT_GE([style headIndent], 24);
}

TEST_F(AttributedText, SpacesBetweenEntriesAndLinesAreKept) {
  Bibliography bibliography = twoEntries();
  bibliography.entrySpacing = 1;
  bibliography.lineSpacing = 2;
  NSParagraphStyle *style = paragraphAt(attributedBibliography(bibliography), 0);
  EXPECT_GT([style paragraphSpacing], 0);
  EXPECT_GT([style minimumLineHeight], 20);
}

TEST_F(AttributedText, AnEmptyBibliographyIsAnEmptyText) {
  EXPECT_EQ([attributedBibliography({}) length], 0U);
}

TEST_F(AttributedText, TheBibliographyKeepsItsLooksInRTF) {
  Bibliography bibliography = twoEntries();
  bibliography.hangingIndent = true;
  bibliography.entries[1].text.runs[0].text = u"Ångström – 温度";
  NSAttributedString *text = attributedBibliography(bibliography);
  NSDictionary *attributes = [NSDictionary dictionaryWithObject:NSRTFTextDocumentType
                                                         forKey:@"DocumentType"];
  NSData *data = [text RTFFromRange:NSMakeRange(0, [text length]) documentAttributes:attributes];
  const std::string rtf(static_cast<const char *>([data bytes]), [data length]);
  EXPECT_EQ(rtf.compare(0, 5, "{\\rtf"), 0) << rtf;
  EXPECT_NE(rtf.find("\\i"), std::string::npos) << rtf;
  EXPECT_NE(rtf.find("\\li720"), std::string::npos) << rtf;
  EXPECT_NE(rtf.find("\\par"), std::string::npos) << rtf;
  NSAttributedString *back = [[[NSAttributedString alloc] initWithRTF:data
                                                   documentAttributes:nullptr] autorelease];
  EXPECT_EQ(markup(back), "First <i>title</i>\nÅngström – 温度");
}

TEST_F(AttributedText, PidginRTFKeepsTheFiveLooks) {
  const FormattedText text{
      {Piece{.text = u"a "}, Piece{.text = u"é{", .italic = true},
       Piece{.text = u"2", .verticalPosition = VerticalPosition::superscript}}};
  const std::string rtf = utf8(korvo::adapter::pidginRTF(attributedText(text)));
  EXPECT_NE(rtf.find("a "), std::string::npos) << rtf;
  EXPECT_NE(rtf.find("{\\i "), std::string::npos) << rtf;
  EXPECT_NE(rtf.find("\\uc0\\u233 "), std::string::npos) << rtf;
  EXPECT_NE(rtf.find("\\'7b"), std::string::npos) << rtf;
  EXPECT_EQ(utf8(korvo::adapter::pidginRTF(attributedText(text))), rtf);
}

TEST_F(AttributedText, PidginRTFIsThePlugInsOwnWhereOneIsLoaded) {
  ConvertibleText *text = [[[ConvertibleText alloc] initWithString:@"" attributes:nil] autorelease];
  EXPECT_EQ(utf8(korvo::adapter::pidginRTF(text)), "the plug-in's");
}

TEST_F(AttributedText, PidginRTFOfNothingIsEmpty) {
  EXPECT_EQ(utf8(korvo::adapter::pidginRTF(nil)), "");
  EXPECT_EQ(utf8(korvo::adapter::pidginRTF(attributedText({}))), "");
}

// Behind a mark that is turned round, what is well-formed could be turned into half a pair.
TEST_F(AttributedText, AByteOrderMarkAtTheBeginningIsACharacterOfTheText) {
  for (const char16_t mark : {u'\uFEFF', u'\uFFFE'}) {
    EXPECT_EQ(korvo::adapter::utf16(korvo::adapter::stringFromUTF16(std::u16string(1, mark))),
              std::u16string(1, mark));
    for (unsigned unit = 0; unit < 0x10000; ++unit) {
      if (unit < 0xD800 || unit > 0xDFFF) {
        const std::u16string text = {mark, static_cast<char16_t>(unit)};
        ASSERT_EQ(korvo::adapter::utf16(korvo::adapter::stringFromUTF16(text)), text);
      }
    }
    const std::u16string withHalfAPair = {mark, 0xD800, u'a'};
    EXPECT_EQ(korvo::adapter::utf16(korvo::adapter::stringFromUTF16(withHalfAPair)),
              (std::u16string{mark, 0xFFFD, u'a'}));
  }
}

TEST_F(AttributedText, TextsCrossTheBridgeUnchanged) {
  for (const std::u16string_view text :
       {std::u16string_view(u""), std::u16string_view(u"a\0b", 3), std::u16string_view(u"ü𝄞")}) {
    EXPECT_EQ(korvo::adapter::utf16(korvo::adapter::stringFromUTF16(text)), text);
    EXPECT_EQ(korvo::adapter::utf16(korvo::adapter::stringFromUTF8(
                  korvo::adapter::utf8(korvo::adapter::stringFromUTF16(text)))),
              text);
  }
  EXPECT_EQ(korvo::adapter::utf8(
                korvo::adapter::stringFromUTF16(std::u16string(1, static_cast<char16_t>(0xD800)))),
            "\uFFFD");
  EXPECT_EQ(korvo::adapter::utf8(nil), "");
}
