#import "AdapterFixture.h"

#import <HostContract/HostContract.h>
#import <StandIns/Korvo/Adapter/StringConversion.h>

#include <gmock/gmock-more-matchers.h>
#include <gtest/gtest.h>

using korvo_test::AdapterFixture;
using korvo_test::utf8;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::SizeIs;

namespace {

class Adapter : public AdapterFixture {
 protected:
  NSUInteger matches(NSString *tag) {
    return [[adapter_.get() referencesMatchingTag:tag inLibrary:library_.get()] count];
  }
};

}  // namespace

TEST_F(Adapter, KeepsTheWholeContract) {
  EXPECT_TRUE([KOAdapter conformsToProtocol:@protocol(KorvoWordProcessorIntegrationAdapter)]);
  EXPECT_TRUE([KOCitation conformsToProtocol:@protocol(KorvoCitation)]);
  EXPECT_TRUE([KOCitationGroup conformsToProtocol:@protocol(KorvoCitationGroup)]);
  EXPECT_TRUE([KOReference conformsToProtocol:@protocol(KorvoReference)]);
  EXPECT_TRUE([KOLibrary conformsToProtocol:@protocol(KorvoLibrary)]);
  EXPECT_TRUE([KOBibStyle conformsToProtocol:@protocol(KorvoBibStyle)]);
}

TEST_F(Adapter, FindsReferencesByIdentifierAndByAuthorAndYear) {
  EXPECT_EQ(matches(@"SMI2001"), 1U);
  EXPECT_EQ(matches(@"Smith, 2001"), 1U);
  EXPECT_EQ(matches(@"Jones & Lee 1999"), 1U);
  EXPECT_EQ(matches(@"Gogh 1888"), 1U);
  EXPECT_EQ(matches(@"Doe 2005"), 2U);
  EXPECT_EQ(matches(@"Nobody 1900"), 0U);
  EXPECT_EQ(matches(@""), 0U);
  EXPECT_EQ(matches(nil), 0U);
}

TEST_F(Adapter, NothingMatchesInNoLibrary) {
  NSSet *found = [adapter_.get() referencesMatchingTag:@"SMI2001" inLibrary:nil];
  ASSERT_NE(found, nil);
  EXPECT_EQ([found count], 0U);
  EXPECT_EQ([[adapter_.get() referencesMatchingTag:@"SMI2001" inLibrary:(id) @"no library"] count],
            0U);
}

TEST_F(Adapter, TwoLookUpsFindTheSameReference) {
  KOReference *once = reference(@"SMI2001");
  KOReference *again = reference(@"Smith 2001");
  EXPECT_TRUE([once isEqual:again]);
  EXPECT_EQ([once hash], [again hash]);
  EXPECT_TRUE([[once UUID] isEqual:[again UUID]]);
  EXPECT_FALSE([once isEqual:reference(@"JON1999")]);
  EXPECT_FALSE([once isEqual:@"SMI2001"]);
}

TEST_F(Adapter, TheTagIsIdentifierOrElseFirstAuthorAndYearOrElseNothing) {
  KOAdapter *adapter = adapter_.get();
  EXPECT_EQ(utf8([adapter inTextCitationTagForReference:reference(@"Smith 2001")]), "SMI2001");
  EXPECT_EQ(utf8([adapter inTextCitationTagForReference:reference(@"Gogh 1888")]), "van Gogh 1888");
  EXPECT_EQ([adapter inTextCitationTagForReference:[library_.get() referenceAtRow:6]], nil);
  EXPECT_EQ([adapter inTextCitationTagForReference:[library_.get() referenceAtRow:99]], nil);
  EXPECT_EQ([adapter inTextCitationTagForReference:nil], nil);
}

TEST_F(Adapter, SplitsAGroupIntoItsCitations) {
  NSArray *strings = [adapter_.get()
      citationStringArrayForCitationGroupString:@" {Smith 2001#SMI2001@45; Jones 1999} "];
  ASSERT_EQ([strings count], 2U);
  EXPECT_EQ(utf8([strings objectAtIndex:0]), "Smith 2001#SMI2001@45");
  EXPECT_EQ(utf8([strings objectAtIndex:1]), " Jones 1999");
  EXPECT_EQ([[adapter_.get() citationStringArrayForCitationGroupString:nil] count], 1U);
}

TEST_F(Adapter, AFreshCitationIsPlain) {
  KOCitation *made = (KOCitation *)[adapter_.get() createCitation];
  EXPECT_EQ([made parts], korvo::adapter::CitationParts {});
  EXPECT_TRUE([made parts].includeInBody);
  EXPECT_TRUE([made parts].includeInBibliography);
  EXPECT_EQ([made reference], nil);
  EXPECT_EQ([made group], nil);
}

TEST_F(Adapter, ACitationRemembersWhatItIsTold) {
  KOCitation *made = (KOCitation *)[adapter_.get() createCitation];
  [made setSearchString:@"s"];
  [made setPageRange:@"1"];
  [made setInTextPrependString:@"p "];
  [made setInTextAppendString:@" a"];
  [made setIncludeInBody:NO];
  [made setIncludeInBibliography:NO];
  [made setStripEnclosure:YES];
  [made setSuppressSuperscript:YES];
  [made setUseYearOnly:YES];
  EXPECT_EQ([made parts], (korvo::adapter::CitationParts{.searchString = u"s",
                                                         .pageRange = u"1",
                                                         .prependString = u"p ",
                                                         .appendString = u" a",
                                                         .includeInBody = false,
                                                         .includeInBibliography = false,
                                                         .useYearOnly = true,
                                                         .suppressSuperscript = true,
                                                         .stripEnclosure = true}));
  [made setPageRange:nil];
  EXPECT_EQ([made parts].pageRange, u"");
}

TEST_F(Adapter, GroupsAreFlattenedInOrder) {
  KOCitation *first = citation(@"SMI2001");
  KOCitation *second = citation(@"JON1999");
  KOCitation *third = citation(@"Gogh 1888");
  KOCitationGroup *one = group({first, second});
  KOCitationGroup *none = group({});
  KOCitationGroup *two = group({third});
  NSArray *all = citationsOf({one, none, two});
  ASSERT_EQ([all count], 3U);
  EXPECT_EQ([all objectAtIndex:0], first);
  EXPECT_EQ([all objectAtIndex:1], second);
  EXPECT_EQ([all objectAtIndex:2], third);
  EXPECT_EQ([[one citations] count], 2U);
  EXPECT_EQ([[none citations] count], 0U);
  EXPECT_EQ([second group], one);
}

TEST_F(Adapter, WhatAGroupHandedOutStaysWhenTheGroupGrows) {
  KOCitationGroup *grown = group({citation(@"SMI2001")});
  NSArray *before = [grown citations];
  [grown addCitation:citation(@"JON1999")];
  EXPECT_EQ([before count], 1U);
  EXPECT_EQ([[grown citations] count], 2U);
  EXPECT_EQ([[grown citations] objectAtIndex:0], [before objectAtIndex:0]);
}

TEST_F(Adapter, ACitationOutlivesItsGroup) {
  KOCitation *kept = [citation(@"SMI2001") retain];
  KOCitationGroup *gone = [[KOCitationGroup alloc] init];
  [gone addCitation:kept];
  EXPECT_EQ([kept group], gone);
  [gone release];
  EXPECT_EQ([kept group], nil);
  [kept release];
}

TEST_F(Adapter, SelectionEditorAndNoticesReachTheUserInterface) {
  interface_.get()->selection_ = [NSArray arrayWithObject:reference(@"SMI2001")];
  EXPECT_EQ([[adapter_.get() selectedReferences] count], 1U);
  EXPECT_EQ([adapter_.get() currentLibrary], library_.get());
  [adapter_.get() displayEditorForReference:reference(@"SMI2001")];
  EXPECT_THAT(interface_.get()->edited_, ElementsAre(utf8([reference(@"SMI2001") UUID])));
  NSAttributedString *summary = [[[NSAttributedString alloc] initWithString:@"text"] autorelease];
  [adapter_.get() postNoticeWithHeader:@"Header" attributedSummary:summary];
  EXPECT_THAT(interface_.get()->notices_, ElementsAre("Header: text"));
}

TEST_F(Adapter, ANoticeSuggestsWhatMayBeMeantByWhatMatchedNothing) {
  [adapter_.get() referencesMatchingTag:@"Smith 2002" inLibrary:library_.get()];
  [adapter_.get() referencesMatchingTag:@"Nobody 1900" inLibrary:library_.get()];
  [adapter_.get() referencesMatchingTag:@"Doe 2006" inLibrary:library_.get()];
  NSString *text = @"Citation 1 Smith 2002: No matches.\nCitation 2 Nobody 1900: No matches.";
  NSAttributedString *summary = [[[NSAttributedString alloc] initWithString:text] autorelease];
  [adapter_.get() postNoticeWithHeader:@"Header" attributedSummary:summary];
  [adapter_.get() postNoticeWithHeader:@"Header" attributedSummary:summary];
  const std::string same = "Header: " + utf8(text);
  ASSERT_EQ(interface_.get()->notices_.size(), 2U);
  const std::string &first = interface_.get()->notices_.front();
  EXPECT_TRUE(first.starts_with(same + "\n\nPerhaps another is meant:\nSmith 2002: Smith, "))
      << first;
  EXPECT_TRUE(first.ends_with("[SMI2001]\n")) << first;
  EXPECT_EQ(interface_.get()->notices_.back(), same);
}

TEST_F(Adapter, AProblemIsShownOnlyOnce) {
  [adapter_.get() reportProblem:@"the disk is full"];
  [adapter_.get() reportProblem:@"the disk is full"];
  EXPECT_THAT(interface_.get()->notices_, ElementsAre(HasSubstr("the disk is full")));
}

TEST_F(Adapter, ASummaryDescribesTheReferenceWithItsTitle) {
  EXPECT_EQ(utf8([[adapter_.get() summaryWithTitleForReference:reference(@"SMI2001")] string]),
            "Smith, John (2001). On Heat. [SMI2001]");
  EXPECT_EQ(
      [[adapter_.get() summaryWithTitleForReference:[library_.get() referenceAtRow:6]] length], 0U);
  EXPECT_EQ([[adapter_.get() summaryWithTitleForReference:nil] length], 0U);
}

TEST_F(Adapter, ATitleThatEndsItselfGetsNoFullStop) {
  ASSERT_TRUE([library_.get() library].replace(
      6, {.identifier = "Q", .cslJson = R"({"type":"book","title":"What Is Heat?"})"}));
  EXPECT_EQ(utf8([[adapter_.get() summaryWithTitleForReference:reference(@"Q")] string]),
            "What Is Heat? [Q]");
}

TEST_F(Adapter, TextAttributesHaveFonts) {
  for (NSDictionary *attributes : {[adapter_.get() bodyTextAttributes],
                                   [adapter_.get() subtitleTextAttributes],
                                   [adapter_.get() notesTextAttributes]}) {
    EXPECT_NE([attributes objectForKey:NSFontAttributeName], nil);
  }
}

TEST_F(Adapter, StylesAreFoundByTitleAndByFileName) {
  id<KorvoBibStyle> style = [adapter_.get() bibStyleNamed:@"ieee"];
  ASSERT_NE(style, nil);
  EXPECT_EQ(utf8([[adapter_.get() bibStyleNamed:[style name]] name]), utf8([style name]));
  EXPECT_EQ([adapter_.get() bibStyleNamed:@"no such style"], nil);
  EXPECT_EQ([adapter_.get() bibStyleNamed:@""], nil);
  EXPECT_EQ([adapter_.get() bibStyleNamed:nil], nil);
  EXPECT_EQ([adapter_.get() bibStyleNamed:@"../apa"], nil);
}

TEST_F(Adapter, KnowsWhichStylesRaiseTheirCitations) {
  EXPECT_EQ([[adapter_.get() bibStyleNamed:@"nature"] useSuperscriptInInTextCitations], YES);
  EXPECT_EQ([[adapter_.get() bibStyleNamed:@"apa"] useSuperscriptInInTextCitations], NO);
}

TEST_F(Adapter, FavoritesAndDefaultStyleAreWhatTheUserPicked) {
  shelf_.useFavorites({"B", "A"});
  NSArray *names = [adapter_.get() favoriteBibStyleNames];
  ASSERT_EQ([names count], 2U);
  EXPECT_EQ(utf8([names objectAtIndex:0]), "B");
  shelf_.useDefaultStyle("ieee");
  EXPECT_NE([adapter_.get() defaultStyle], nil);
  shelf_.useDefaultStyle("");
  EXPECT_EQ([adapter_.get() defaultStyle], nil);
}

TEST_F(Adapter, WithoutPicksAFewWellKnownStylesAreOffered) {
  EXPECT_GT([[adapter_.get() favoriteBibStyleNames] count], 3U);
  EXPECT_NE([adapter_.get() defaultStyle], nil);
}

TEST_F(Adapter, PicksAreRememberedForTheNextRun) {
  shelf_.rememberFavorites({"One", "Zwei – ü"});
  shelf_.rememberDefaultStyle("ieee");
  korvo::adapter::StyleShelf next(korvo::engine::StyleCatalog::installed());
  EXPECT_THAT(next.favorites(), ElementsAre("One", "Zwei – ü"));
  EXPECT_EQ(next.defaultStyle(), "ieee");
  [[NSUserDefaults standardUserDefaults] removeObjectForKey:@"FavoriteStyles"];
  [[NSUserDefaults standardUserDefaults] removeObjectForKey:@"DefaultStyle"];
}
