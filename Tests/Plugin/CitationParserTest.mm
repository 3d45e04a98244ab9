// From citation texts to the host's citations.

#import "Support/AgentTest.h"

namespace plugin_test {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::Pair;
using testing::SizeIs;
using testing::UnorderedElementsAre;

class CitationParser : public AgentTest {
 protected:
  NSArray *parse(std::initializer_list<std::string_view> texts) {
    NSMutableArray *strings = [NSMutableArray array];
    for (const std::string_view text : texts) {
      [strings addObject:ns(text)];
    }
    return [agent_ citationGroupsWithCitationStringArray:strings];
  }

  // The only citation of the only group.
  RecordingCitation *parseOne(std::string_view text) {
    NSArray *groups = parse({text});
    EXPECT_EQ([groups count], 1u);
    NSArray *citations = [[groups objectAtIndex:0] citations];
    EXPECT_EQ([citations count], 1u) << text;
    return [citations count] == 1 ? [citations objectAtIndex:0] : nil;
  }

  std::map<std::string, std::string> optionsOf(std::string_view text) {
    RecordingCitation *citation = parseOne(text);
    return citation == nil ? std::map<std::string, std::string>() : citation->options;
  }

  std::size_t citationsIn(std::string_view text) {
    return [[[parse({text}) objectAtIndex:0] citations] count];
  }
};

TEST_F(CitationParser, EmptyInputFetchesTheLibraryAndPostsNothing) {
  NSArray *groups = parse({});
  ASSERT_NE(groups, nil);
  EXPECT_EQ([groups count], 0u);
  EXPECT_THAT(calls(), ElementsAre("currentLibrary"));
}

TEST_F(CitationParser, CompleteCitationSetsEveryPieceInOrder) {
  host_->matches["SMI2001"] = {"smith"};
  RecordingCitation *citation = parseOne("!%\\see \\Smith 2001\\, fig. 2\\#SMI2001@45-47");
  EXPECT_EQ((id)[citation reference], [host_ referenceNamed:"smith"]);
  EXPECT_THAT(
      calls(),
      ElementsAre("currentLibrary", "split !%\\see \\Smith 2001\\, fig. 2\\#SMI2001@45-47",
                  "createCitationGroup", "createCitation", "setPageRange 45-47", "match SMI2001",
                  "setReference smith", "setIncludeInBody NO", "setUseYearOnly YES",
                  "setInTextPrependString see ", "setInTextAppendString , fig. 2",
                  "setSearchString Smith 2001", "addCitation"));
}

TEST_F(CitationParser, PlainTextSetsNothingButTheSearchString) {
  host_->matches["Smith 2001"] = {"smith"};
  EXPECT_THAT(optionsOf(" Smith 2001\t"),
              UnorderedElementsAre(Pair("SearchString", "Smith 2001"), Pair("Reference", "smith")));
}

TEST_F(CitationParser, FlagsEachSetTheirOption) {
  EXPECT_THAT(optionsOf("!^%_*X"),
              UnorderedElementsAre(Pair("IncludeInBody", "NO"), Pair("IncludeInBibliography", "NO"),
                                   Pair("UseYearOnly", "YES"), Pair("SuppressSuperscript", "YES"),
                                   Pair("StripEnclosure", "YES"), Pair("SearchString", "X")));
}

TEST_F(CitationParser, FlagOutOfOrderStaysInTheText) {
  EXPECT_THAT(optionsOf("%!Smith"),
              UnorderedElementsAre(Pair("UseYearOnly", "YES"), Pair("SearchString", "!Smith")));
  EXPECT_THAT(optionsOf("^!Smith"), UnorderedElementsAre(Pair("IncludeInBibliography", "NO"),
                                                         Pair("SearchString", "!Smith")));
}

TEST_F(CitationParser, BlankBeforeAFlagKeepsItInTheText) {
  EXPECT_THAT(optionsOf(" !Smith"), UnorderedElementsAre(Pair("SearchString", "!Smith")));
}

TEST_F(CitationParser, LastAtSignStaysInTheText) {
  EXPECT_THAT(optionsOf("Smith 2001@"), UnorderedElementsAre(Pair("SearchString", "Smith 2001@")));
}

TEST_F(CitationParser, PageRangeTakesATagBehindIt) {
  EXPECT_THAT(
      optionsOf("Smith 2001@12#ABC"),
      UnorderedElementsAre(Pair("PageRange", "12#ABC"), Pair("SearchString", "Smith 2001")));
  EXPECT_THAT(callsOf({"match"}), ElementsAre("match Smith 2001"));
}

TEST_F(CitationParser, TagBeforeThePageRangeIsLookedUp) {
  host_->matches["ABC"] = {"abc"};
  EXPECT_THAT(optionsOf("Smith 2001#ABC@12"),
              UnorderedElementsAre(Pair("PageRange", "12"), Pair("Reference", "abc"),
                                   Pair("SearchString", "Smith 2001")));
}

TEST_F(CitationParser, TagAloneIsDiscardedWithoutNotice) {
  host_->matches["ABC"] = {"abc"};
  EXPECT_EQ(citationsIn("#ABC"), 0u);
  EXPECT_THAT(callsOf({"match"}), ElementsAre("match ABC"));
  EXPECT_THAT(host_->notices, IsEmpty());
}

TEST_F(CitationParser, AmbiguousTagGivesTheSearchTextItsChance) {
  host_->matches["TAG"] = {"one", "two"};
  host_->matches["Smith"] = {"smith"};
  EXPECT_EQ(optionsOf("Smith#TAG")["Reference"], "smith");
  EXPECT_THAT(host_->notices, IsEmpty());
}

TEST_F(CitationParser, AmbiguousTagPicksNoReferenceEvenIfTheSearchTextMatchesNone) {
  host_->matches["TAG"] = {"one", "two"};
  EXPECT_THAT(optionsOf("Smith#TAG"), UnorderedElementsAre(Pair("SearchString", "Smith")));
  ASSERT_THAT(host_->notices, SizeIs(1));
  EXPECT_THAT(host_->notices[0].second, HasSubstr("Citation 1 Smith: No matches were found."));
}

TEST_F(CitationParser, TagOfNothingButWhiteSpaceIsLookedUpAsAnEmptyOne) {
  optionsOf("Smith# ");
  EXPECT_THAT(callsOf({"match"}), ElementsAre("match ", "match Smith"));
  host_->matches[""] = {"nameless"};
  EXPECT_EQ(optionsOf("Smith#\t")["Reference"], "nameless");
}

TEST_F(CitationParser, UnknownTagGivesTheSearchTextItsChance) {
  host_->matches["Smith"] = {"smith"};
  EXPECT_EQ(optionsOf("Smith # TAG ")["Reference"], "smith");
  EXPECT_THAT(callsOf({"match"}), ElementsAre("match TAG", "match Smith"));
}

// What is set before it is seen to be empty stays set: the host may look at what it has created.
TEST_F(CitationParser, DiscardedCitationGotWhatItsTextAskedFor) {
  host_->matches["ABC"] = {"abc"};
  EXPECT_EQ(citationsIn("!\\see\\#ABC@12"), 0u);
  ASSERT_EQ([host_->citations count], 1u);
  EXPECT_THAT(((RecordingCitation *)[host_->citations objectAtIndex:0])->options,
              UnorderedElementsAre(Pair("PageRange", "12"), Pair("Reference", "abc"),
                                   Pair("IncludeInBody", "NO"), Pair("InTextAppendString", "see")));
}

TEST_F(CitationParser, PrependTextNeedsTwoCharactersBehindIt) {
  EXPECT_EQ(citationsIn("\\see\\X"), 0u);
  EXPECT_EQ(
      ((RecordingCitation *)[host_->citations objectAtIndex:0])->options["InTextAppendString"],
      "see");
  EXPECT_THAT(optionsOf("\\see\\XY"),
              UnorderedElementsAre(Pair("InTextPrependString", "see"), Pair("SearchString", "XY")));
}

TEST_F(CitationParser, AdjacentBackslashesDoNotCloseTheAppendText) {
  EXPECT_THAT(
      optionsOf("Smith\\\\ p. 5"),
      UnorderedElementsAre(Pair("InTextAppendString", "\\ p. 5"), Pair("SearchString", "Smith")));
}

TEST_F(CitationParser, WhatFollowsAClosedAppendTextIsLost) {
  EXPECT_THAT(
      optionsOf("Smith\\, p. 5\\ more"),
      UnorderedElementsAre(Pair("InTextAppendString", ", p. 5"), Pair("SearchString", "Smith")));
}

TEST_F(CitationParser, GroupWhoseCitationsAreAllEmptyKeepsItsPlace) {
  host_->matches["A"] = {"a"};
  host_->matches["B"] = {"b"};
  NSArray *groups = parse({"A", " ;#x;", "B"});
  ASSERT_EQ([groups count], 3u);
  EXPECT_EQ([[[groups objectAtIndex:1] citations] count], 0u);
  EXPECT_EQ([[[groups objectAtIndex:2] citations] count], 1u);
}

TEST_F(CitationParser, NumbersRunOnAcrossGroupsAndSkipDiscardedCitations) {
  host_->matches["known"] = {"known"};
  parse({"first;;known", " ", "fourth... no: third"});
  ASSERT_THAT(host_->notices, SizeIs(1));
  const std::string &text = host_->notices[0].second;
  EXPECT_NE(text.find("Citation 1 first: No matches were found."), std::string::npos) << text;
  EXPECT_NE(text.find("Citation 3 fourth... no: third: No matches were found."), std::string::npos)
      << text;
}

TEST_F(CitationParser, CitationFoundByItsTagCountsToo) {
  host_->matches["TAG"] = {"found"};
  parse({"Smith#TAG;unknown", "Smith#TAG", "strange"});
  ASSERT_THAT(host_->notices, SizeIs(1));
  EXPECT_THAT(host_->notices[0].second,
              AllOf(HasSubstr("Citation 2 unknown:"), HasSubstr("Citation 4 strange:")));
}

// A document may hold more of them than a small number can count.
TEST_F(CitationParser, NumbersGoBeyondSixteenBits) {
  host_->matches["known"] = {"known"};
  constexpr int many = 70'000;
  NSMutableArray *strings = [NSMutableArray arrayWithCapacity:many];
  for (int index = 1; index < many; ++index) {
    [strings addObject:@"known"];
  }
  [strings addObject:@"unknown"];
  [agent_ citationGroupsWithCitationStringArray:strings];
  ASSERT_THAT(host_->notices, SizeIs(1));
  EXPECT_THAT(host_->notices[0].second, HasSubstr("Citation 70000 unknown:"));
}

TEST_F(CitationParser, EachCallCountsFromOne) {
  parse({"a", "b"});
  parse({"c"});
  ASSERT_THAT(host_->notices, SizeIs(2));
  EXPECT_NE(host_->notices[1].second.find("Citation 1 c:"), std::string::npos);
}

TEST_F(CitationParser, SeveralMatchesPickNoReference) {
  host_->matches["Smith"] = {"one", "two"};
  RecordingCitation *citation = parseOne("Smith");
  EXPECT_EQ((id)[citation reference], nil);
  ASSERT_THAT(host_->notices, SizeIs(1));
  EXPECT_NE(host_->notices[0].second.find("Citation 1 Smith: 2 matches were found."),
            std::string::npos);
}

TEST_F(CitationParser, LibraryIsFetchedOnceAndUsedThroughout) {
  const auto original = host_->library;
  hostScript().split = [this](NSString *text) {
    // The user selects another library meanwhile.
    host_->library = [[RecordingLibrary alloc] init];
    return [NSArray arrayWithObject:text];
  };
  parse({"a", "b"});
  EXPECT_THAT(
      callsOf({"currentLibrary", "match"}),
      ElementsAre("currentLibrary", "match a in another library", "match b in another library"));
  host_->library = original;
}

TEST_F(CitationParser, LibraryMayBeNil) {
  RecordingLibrary *original = host_->library;
  host_->library = nil;
  parse({"a#b"});
  EXPECT_THAT(callsOf({"match"}), ElementsAre("match b", "match a"));
  host_->library = original;
}

// That none is selected is what the notice is there to tell.
TEST_F(CitationParser, WithoutALibraryTheNoticeIsPostedAllTheSame) {
  RecordingLibrary *original = host_->library;
  host_->library = nil;
  parse({"a"});
  host_->library = original;
  ASSERT_THAT(host_->notices, SizeIs(1));
  EXPECT_THAT(host_->notices[0].second, HasSubstr("Citation 1 a: No matches were found."));
}

TEST_F(CitationParser, AllResolvedPostsNothing) {
  host_->matches["a"] = {"a"};
  parse({"a", "a;a"});
  EXPECT_THAT(host_->notices, IsEmpty());
}

TEST_F(CitationParser, FullSummaryTakesNoFurtherNoticesButIsPostedWithItsClosingNotes) {
  const std::string filler(300, 'x');
  NSMutableArray *strings = [NSMutableArray array];
  for (int index = 1; index <= 40; ++index) {
    [strings addObject:ns(std::to_string(index) + filler)];
  }
  [agent_ citationGroupsWithCitationStringArray:strings];
  ASSERT_THAT(host_->notices, SizeIs(1));
  const std::string &text = host_->notices[0].second;
  std::size_t notices = 0;
  for (std::size_t at = text.find("No matches"); at != std::string::npos;
       at = text.find("No matches", at + 1)) {
    ++notices;
  }
  // The limit is tested before each notice: the one that crosses it is still there, whole.
  const std::size_t advice = text.find("This problem is often");
  ASSERT_NE(advice, std::string::npos);
  const std::size_t closing = text.find("\n\nReconcile");
  ASSERT_NE(closing, std::string::npos);
  EXPECT_GE(closing, 2500u);
  EXPECT_LT(closing, 2500u + 350u);
  EXPECT_EQ(notices, 7u);
  // Numbering and look-ups went on.
  EXPECT_EQ(callsOf({"match"}).size(), 40u);
}

TEST_F(CitationParser, SummaryOf2499CharactersTakesOneMoreAndOneOf2500None) {
  for (const std::size_t length : {2499u, 2500u}) {
    host_->notices.clear();
    // "\nCitation 1 X: No matches were found.\n" without X, once the library advice is given.
    const std::size_t frame = std::string("\nCitation 1 : No matches were found.\n").size();
    [agent_ appendNotFoundNoticeToSummary:[[[NSMutableAttributedString alloc] init] autorelease]
                                  atIndex:1
                                   forTag:@"advice"];
    parse({std::string(length - frame, 'x'), "second"});
    ASSERT_THAT(host_->notices, SizeIs(1));
    EXPECT_EQ(host_->notices[0].second.find("Citation 2 second") != std::string::npos,
              length == 2499u);
  }
}

TEST_F(CitationParser, FullSummaryTakesNoDuplicateNoticeEither) {
  host_->matches["several"] = {"one", "two"};
  parse({std::string(2500, 'x'), "several", "nobody"});
  ASSERT_THAT(host_->notices, SizeIs(1));
  EXPECT_THAT(host_->notices[0].second, Not(HasSubstr("several")));
  parse({"several"});
  ASSERT_THAT(host_->notices, SizeIs(2));
  EXPECT_THAT(host_->notices[1].second, HasSubstr("Citation 1 several: 2 matches were found."));
}

TEST_F(CitationParser, OddElementsOfASplitAreNoCitations) {
  hostScript().split = [](NSString *) {
    return array({[NSNull null], @"Smith", [NSNumber numberWithInt:3]});
  };
  NSArray *groups = parse({"anything"});
  EXPECT_EQ([[[groups objectAtIndex:0] citations] count], 1u);
}

TEST_F(CitationParser, HalfOfASurrogatePairLosesNoCitation) {
  hostScript().split = [](NSString *) {
    return array({[ns("a😀") substringWithRange:NSMakeRange(0, 2)], @"b"});
  };
  NSArray *citations = [[parse({"anything"}) objectAtIndex:0] citations];
  ASSERT_EQ([citations count], 2u);
  EXPECT_EQ(((RecordingCitation *)[citations objectAtIndex:0])->options["SearchString"],
            "a\xEF\xBF\xBD");
}

// Short plain texts become strings by a way of their own.
TEST_F(CitationParser, TextsOfEveryLengthReachTheHostWhole) {
  for (std::size_t length = 1; length < 300; ++length) {
    const std::string tag(length, 't');
    const std::string text(length, 's');
    const auto options = optionsOf(text + "#" + tag);
    ASSERT_EQ(options.at("SearchString"), text);
    ASSERT_THAT(calls(), testing::Contains("match " + tag));
    calls().clear();
  }
}

TEST_F(CitationParser, ANULInsideATextIsACharacterOfIt) {
  hostScript().split = [](NSString *) {
    const unichar units[] = {'a', 0, 'b'};
    return array({[NSString stringWithCharacters:units length:3]});
  };
  RecordingCitation *citation = [[[parse({"anything"}) objectAtIndex:0] citations] objectAtIndex:0];
  EXPECT_EQ(citation->options["SearchString"], std::string("a\0b", 3));
}

TEST_F(CitationParser, SplitThatIsNilGivesAGroupWithoutCitations) {
  hostScript().split = [](NSString *) -> NSArray * { return nil; };
  NSArray *groups = parse({"anything"});
  ASSERT_EQ([groups count], 1u);
  EXPECT_EQ([[[groups objectAtIndex:0] citations] count], 0u);
}

TEST_F(CitationParser, WithoutAdapterTheRequestIsRefusedByAnException) {
  [agentClass_ setAdapter:nil];
  EXPECT_ANY_THROW(parse({"Smith"}));
}

TEST_F(CitationParser, ScrubbingRemovesLeadingMarkersOnly) {
  const std::pair<std::string, std::string> cases[] = {{"verified X", "X"},
                                                       {"verified verified X", "X"},
                                                       {"verified ", ""},
                                                       {"verified verified ", ""},
                                                       {"Verified Smith", "Verified Smith"},
                                                       {"verifiedSmith", "verifiedSmith"},
                                                       {"verified  X", " X"},
                                                       {"X verified ", "X verified "},
                                                       {"", ""}};
  for (const auto &[text, scrubbed] : cases) {
    EXPECT_EQ(str([agent_ scrubVerified:ns(text)]), scrubbed) << text;
  }
}

TEST_F(CitationParser, GroupStringsComeOneForEachGroupInOrder) {
  host_->matches["a"] = {"a"};
  RecordingStyle *style = [host_ addStyle:"S"];
  NSArray *groups = parse({"a", " ", "a;a"});
  calls().clear();
  NSArray *strings = [agent_ citationGroupStringsWithGroupArray:groups andStyle:style];
  ASSERT_EQ([strings count], 3u);
  EXPECT_EQ(str([[strings objectAtIndex:0] string]), "[1]");
  EXPECT_EQ(str([[strings objectAtIndex:1] string]), "[0]");
  EXPECT_EQ(str([[strings objectAtIndex:2] string]), "[2]");
  EXPECT_THAT(calls(), ElementsAre("format 1", "format 0", "format 2"));
}

TEST_F(CitationParser, NoGroupsAskTheStyleNothing) {
  NSArray *strings = [agent_ citationGroupStringsWithGroupArray:[NSArray array]
                                                       andStyle:[host_ addStyle:"S"]];
  ASSERT_NE(strings, nil);
  EXPECT_EQ([strings count], 0u);
  EXPECT_THAT(calls(), IsEmpty());
}

TEST_F(CitationParser, StyleWithoutAnswerGivesAnEmptyText) {
  RecordingStyle *style = [host_ addStyle:"S"];
  hostScript().formatGroup = [](NSArray *) -> NSAttributedString * { return nil; };
  NSArray *strings = [agent_ citationGroupStringsWithGroupArray:parse({"a", "b"}) andStyle:style];
  ASSERT_EQ([strings count], 2u);
  EXPECT_EQ([[strings objectAtIndex:1] length], 0u);
}

}  // namespace
}  // namespace plugin_test
