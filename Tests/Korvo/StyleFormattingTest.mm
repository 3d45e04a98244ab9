// Documents formatted by real styles, asked for in the order in which plug-ins ask.
#import "AdapterFixture.h"

#import <HostContract/HostContract.h>
#import <StandIns/Korvo/Adapter/KOFormattedGroup.h>
#import <StandIns/Korvo/Application/KORehearsal.h>

#include <gmock/gmock-more-matchers.h>
#include <gtest/gtest.h>

using korvo_test::markup;
using korvo_test::utf8;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {

class StyleFormatting : public korvo_test::AdapterFixture {
 protected:
  // The groups' texts, after the style has seen the whole document.
  std::vector<std::string> formatted(NSString *style,
                                     std::initializer_list<KOCitationGroup *> groups) {
    style_ = [adapter_.get() bibStyleNamed:style];
    EXPECT_NE(style_, nil);
    citations_ = citationsOf(groups);
    [style_ setPropertiesInCitationArray:citations_];
    std::vector<std::string> texts;
    for (KOCitationGroup *each : groups) {
      texts.push_back(markup([style_ attributedGroupStringForCitationArray:[each citations]]));
    }
    return texts;
  }

  std::string bibliography() {
    NSMutableDictionary *attributes =
        [NSMutableDictionary dictionaryWithObject:NSRTFTextDocumentType forKey:@"DocumentType"];
    return markup([style_ attributedBibliographyStringForCitationArray:citations_
                                                            attributes:attributes]);
  }

  id<KorvoBibStyle> style_ = nil;
  NSArray *citations_ = nil;
};

void runLoopFor(NSTimeInterval time) {
  [[NSRunLoop currentRunLoop] runMode:NSDefaultRunLoopMode
                           beforeDate:[NSDate dateWithTimeIntervalSinceNow:time]];
}

bool ends(KORehearsal *rehearsal) {
  NSDate *limit = [NSDate dateWithTimeIntervalSinceNow:60];
  while (![rehearsal isOver] && [limit timeIntervalSinceNow] > 0) {
    runLoopFor(0.1);
  }
  return [rehearsal isOver];
}

TEST_F(StyleFormatting, ARehearsalWaitsForAnAuthorWhoGoesOnAsking) {
  const auto rehearsal = korvo::adapter::Owned<KORehearsal *>::taking(
      [[KORehearsal alloc] initWithLibrary:library_.get() styles:shelf_]);
  [rehearsal.get() start];
  NSDate *end = [NSDate dateWithTimeIntervalSinceNow:1.6];
  while ([end timeIntervalSinceNow] > 0) {
    (void)[adapter_.get() referencesMatchingTag:@"SMI2001" inLibrary:library_.get()];
    runLoopFor(0.05);
  }
  EXPECT_FALSE([rehearsal.get() isOver]);
  EXPECT_TRUE(ends(rehearsal.get()));
}

TEST_F(StyleFormatting, ARehearsalTellsNothingAndChangesNoAnswer) {
  const auto rehearsal = korvo::adapter::Owned<KORehearsal *>::taking(
      [[KORehearsal alloc] initWithLibrary:library_.get() styles:shelf_]);
  [rehearsal.get() start];
  EXPECT_TRUE(ends(rehearsal.get()));
  EXPECT_THAT(interface_.get()->notices_, ElementsAre());
  EXPECT_THAT(formatted(@"apa", {group({citation(@"SMI2001")})}), ElementsAre("(Smith, 2001)"));
}

}  // namespace

TEST_F(StyleFormatting, AuthorAndYear) {
  KOCitation *withPage = citation(@"SMI2001");
  [withPage setPageRange:@"45"];
  EXPECT_THAT(
      formatted(@"apa", {group({withPage}), group({citation(@"SMI2001"), citation(@"JON1999")})}),
      ElementsAre("(Smith, 2001, p. 45)", "(Jones & Lee, 1999; Smith, 2001)"));
  EXPECT_THAT(bibliography(), HasSubstr("Smith, J. (2001). <i>On Heat</i>. Press."));
}

TEST_F(StyleFormatting, NumbersCountThroughTheWholeDocument) {
  EXPECT_THAT(formatted(@"ieee", {group({citation(@"JON1999")}), group({citation(@"SMI2001")}),
                                  group({citation(@"JON1999")})}),
              ElementsAre("[1]", "[2]", "[1]"));
  EXPECT_THAT(bibliography(), testing::StartsWith("[1]\tA. Jones"));
}

TEST_F(StyleFormatting, RaisedNumbers) {
  EXPECT_THAT(formatted(@"nature", {group({citation(@"SMI2001")})}), ElementsAre("<sup>1</sup>"));
}

TEST_F(StyleFormatting, OptionsReachTheReader) {
  KOCitation *yearOnly = citation(@"SMI2001");
  [yearOnly setUseYearOnly:YES];
  KOCitation *notInText = citation(@"JON1999");
  [notInText setIncludeInBody:NO];
  KOCitation *around = citation(@"SMI2001");
  [around setInTextPrependString:@"see "];
  [around setInTextAppendString:@", fig. 2"];
  EXPECT_THAT(formatted(@"apa", {group({yearOnly}), group({notInText}), group({around})}),
              ElementsAre("(2001)", "", "(see Smith, 2001, fig. 2)"));
  EXPECT_THAT(bibliography(), HasSubstr("Jones"));
}

TEST_F(StyleFormatting, AnUnresolvedGroupIsShownAsItsAuthorWroteIt) {
  KOCitation *nobody = citation(@"Nobody 1900");
  [nobody setPageRange:@"3"];
  [nobody setUseYearOnly:YES];
  EXPECT_THAT(
      formatted(@"ieee", {group({nobody}),
                          group({citation(@"SMI2001", @"Smith 2001"), citation(@"Doe 2005")}),
                          group({citation(@"JON1999")})}),
      ElementsAre("{%Nobody 1900@3}", "{Smith 2001#SMI2001; Doe 2005}", "[1]"));
  EXPECT_THAT(bibliography(), testing::Not(HasSubstr("Nobody")));
}

TEST_F(StyleFormatting, AnEmptyGroupIsAnEmptyText) {
  EXPECT_THAT(
      formatted(@"apa", {group({citation(@"SMI2001")}), group({}), group({citation(@"JON1999")})}),
      ElementsAre("(Smith, 2001)", "", "(Jones & Lee, 1999)"));
  ASSERT_NE([style_ attributedGroupStringForCitationArray:[NSArray array]], nil);
}

TEST_F(StyleFormatting, NeighbouringGroupsOfOneCitationStayApart) {
  EXPECT_THAT(formatted(@"apa", {group({citation(@"SMI2001")}), group({citation(@"SMI2001")})}),
              ElementsAre("(Smith, 2001)", "(Smith, 2001)"));
}

TEST_F(StyleFormatting, AGroupAskedForAloneIsFormattedAlone) {
  id<KorvoBibStyle> apa = [adapter_.get() bibStyleNamed:@"apa"];
  EXPECT_EQ(
      markup([apa attributedGroupStringForCitationArray:[group({citation(@"SMI2001")}) citations]]),
      "(Smith, 2001)");
  NSArray *loose = [NSArray arrayWithObjects:citation(@"SMI2001"), citation(@"JON1999"), nil];
  EXPECT_EQ(markup([apa attributedGroupStringForCitationArray:loose]),
            "(Jones & Lee, 1999; Smith, 2001)");
}

TEST_F(StyleFormatting, AskingForOneGroupAloneLeavesTheDocumentAsItWas) {
  KOCitation *jones = citation(@"JON1999");
  KOCitation *smith = citation(@"SMI2001");
  EXPECT_THAT(formatted(@"ieee", {group({jones}), group({smith})}), ElementsAre("[1]", "[2]"));
  id<KorvoBibStyle> apa = [adapter_.get() bibStyleNamed:@"apa"];
  EXPECT_EQ(markup([apa attributedGroupStringForCitationArray:[NSArray arrayWithObject:smith]]),
            "(Smith, 2001)");
  EXPECT_EQ(markup([style_ attributedGroupStringForCitationArray:[NSArray arrayWithObject:smith]]),
            "[2]");
  EXPECT_THAT(bibliography(), HasSubstr("[2]\tJ. Smith"));
}

TEST_F(StyleFormatting, AChangedCitationIsFormattedAgain) {
  KOCitation *changed = citation(@"SMI2001");
  KOCitationGroup *its = group({changed});
  EXPECT_THAT(formatted(@"apa", {its}), ElementsAre("(Smith, 2001)"));
  [changed setPageRange:@"7"];
  EXPECT_EQ(markup([style_ attributedGroupStringForCitationArray:[its citations]]),
            "(Smith, 2001, p. 7)");
}

TEST_F(StyleFormatting, ABibliographyAskedForAloneListsWhatIsCited) {
  style_ = [adapter_.get() bibStyleNamed:@"apa"];
  citations_ = [NSArray arrayWithObject:citation(@"SMI2001")];
  EXPECT_THAT(bibliography(), HasSubstr("<i>On Heat</i>"));
  citations_ = [NSArray array];
  EXPECT_EQ(bibliography(), "");
}

TEST_F(StyleFormatting, AnEditIsSeenByTheNextDocument) {
  EXPECT_THAT(formatted(@"apa", {group({citation(@"SMI2001")})}), ElementsAre("(Smith, 2001)"));
  KOReference *edited = reference(@"SMI2001");
  ASSERT_TRUE([library_.get() library].replace([edited row], {
    .identifier = "SMI2001", .cslJson =
                                 R"({"type":"book","title":"T","author":[{"family":"Smyth"}],)"
                                 R"("issued":{"date-parts":[[2002]]}})"
  }));
  EXPECT_THAT(formatted(@"apa", {group({citation(@"SMI2001")})}), ElementsAre("(Smyth, 2002)"));
}

TEST_F(StyleFormatting, ForeignObjectsAmongTheCitationsAreSkipped) {
  id<KorvoBibStyle> apa = [adapter_.get() bibStyleNamed:@"apa"];
  NSArray *odd = [NSArray arrayWithObjects:@"text", citation(@"SMI2001"), nil];
  [apa setPropertiesInCitationArray:odd];
  EXPECT_EQ(markup([apa attributedGroupStringForCitationArray:odd]), "(Smith, 2001)");
}

TEST_F(StyleFormatting, AStyleThatCannotBeCarriedOutIsReportedAndLosesNothing) {
  korvo::engine::Style broken{.name = {.baseName = "broken", .title = "Broken"},
                              .file = "/no/such/style.csl",
                              .locale = ""};
  KOBibStyle *style =
      [[[KOBibStyle alloc] initWithStyle:broken
                               formatter:std::make_shared<korvo::adapter::DocumentFormatter>()
                                reporter:adapter_.get()] autorelease];
  KOCitationGroup *its = group({citation(@"SMI2001", @"Smith 2001")});
  [style setPropertiesInCitationArray:[its citations]];
  EXPECT_EQ(markup([style attributedGroupStringForCitationArray:[its citations]]),
            "{Smith 2001#SMI2001}");
  EXPECT_THAT(interface_.get()->notices_, ElementsAre(HasSubstr("/no/such/style.csl")));
}
