// What the host remembers of a document is what a host that remembers nothing would answer.
#import "AdapterFixture.h"

#import <HostContract/HostContract.h>
#import <StandIns/Korvo/Adapter/AttributedCitations.h>
#import <StandIns/Korvo/Adapter/CitedDocument.h>
#import <StandIns/Korvo/Adapter/DocumentFormatter.h>
#import <StandIns/Korvo/Adapter/KOConvertedText.h>
#import <StandIns/Korvo/Adapter/PidginRTFText.h>
#import <StandIns/Korvo/Adapter/RememberedMatches.h>
#import <StandIns/Korvo/Adapter/StringConversion.h>
#include <Tests/Support/Effort.h>
#include <Tests/Support/Files.h>
#include <Tests/Support/TemporaryDirectory.h>

#include <gmock/gmock-more-matchers.h>
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <functional>
#include <random>
#include <set>

using korvo::adapter::Owned;
using korvo::library::Library;
using korvo::library::NewReference;
using korvo_test::markup;
using korvo_test::utf8;
using test_support::readFile;
using test_support::TemporaryDirectory;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {

NewReference book(const std::string &identifier, const std::string &family, int year) {
  return {.identifier = identifier,
          .cslJson = R"({"type":"book","title":"On )" + identifier + R"(","author":[{"family":")" +
                     family + R"("}],"issued":{"date-parts":[[)" + std::to_string(year) + "]]}}"};
}

// A library in a file, and another program that has it open.
class Remembering : public korvo_test::AdapterFixture {
 protected:
  Remembering() {
    auto opened = Library::openOrCreate(file_);
    EXPECT_TRUE(opened);
    const NewReference references[] = {book("a", "Smith", 2001), book("b", "Smith", 2001),
                                       book("c", "Jones", 1999), book("d", "Doe", 1950)};
    EXPECT_TRUE(opened->add(references));
    kept_ = Owned<KOLibrary *>::taking([[KOLibrary alloc] initWithLibrary:*std::move(opened)]);
    interface_.get()->library_ = kept_.get();
  }

  NSSet *matches(NSString *tag) {
    return [adapter_.get() referencesMatchingTag:tag inLibrary:kept_.get()];
  }

  KOCitation *cited(NSString *tag) {
    KOCitation *made = (KOCitation *)[adapter_.get() createCitation];
    [made setSearchString:tag];
    NSSet *found = matches(tag);
    if ([found count] == 1) {
      [made setReference:[found anyObject]];
    }
    return made;
  }

  // As another program does it, once this one's event is over.
  void elsewhere(const std::function<void(Library &)> &change) {
    [kept_.get() endTurn];
    auto other = Library::open(file_);
    ASSERT_TRUE(other);
    change(*other);
  }

  void execute(const char *statement) {
    [kept_.get() endTurn];
    sqlite3 *editor = nullptr;
    ASSERT_EQ(sqlite3_open(file_.c_str(), &editor), SQLITE_OK);
    EXPECT_EQ(sqlite3_exec(editor, statement, nullptr, nullptr, nullptr), SQLITE_OK);
    sqlite3_close(editor);
  }

  TemporaryDirectory directory_;
  std::filesystem::path file_ = directory_ / "kept.korvolib";
  Owned<KOLibrary *> kept_;
};

std::set<std::int64_t> rowsOf(NSSet *references) {
  std::set<std::int64_t> rows;
  NSArray *all = [references allObjects];
  for (NSUInteger index = 0; index < [all count]; ++index) {
    rows.insert([(KOReference *)[all objectAtIndex:index] row]);
  }
  return rows;
}

TEST_F(Remembering, ATagIsLookedUpOnceWhileTheLibraryStays) {
  EXPECT_EQ(matches(@"a"), matches(@"a"));
  [kept_.get() endTurn];
  NSSet *before = matches(@"c");
  [kept_.get() endTurn];
  EXPECT_EQ(matches(@"c"), before);
  EXPECT_EQ(matches(@"Jones 1999"), before);
}

TEST_F(Remembering, WhatIsAddedIsFound) {
  EXPECT_EQ([matches(@"new") count], 0U);
  const NewReference added = book("new", "New", 2020);
  ASSERT_TRUE([kept_.get() library].add({&added, 1}));
  EXPECT_EQ([matches(@"new") count], 1U);
  EXPECT_EQ([matches(@"newer") count], 0U);
  elsewhere([](Library &other) {
    const NewReference newer = book("newer", "Newer", 2021);
    EXPECT_TRUE(other.add({&newer, 1}));
  });
  EXPECT_EQ([matches(@"newer") count], 1U);
}

TEST_F(Remembering, WhatIsCorrectedIsFoundUnderItsNewName) {
  ASSERT_EQ([matches(@"c") count], 1U);
  ASSERT_EQ([matches(@"Jones 1999") count], 1U);
  ASSERT_EQ([matches(@"Jonas 1999") count], 0U);
  const auto row = [(KOReference *)[matches(@"c") anyObject] row];
  ASSERT_TRUE([kept_.get() library].replace(row, book("c", "Jonas", 1999)));
  EXPECT_EQ([matches(@"Jones 1999") count], 0U);
  EXPECT_EQ([matches(@"Jonas 1999") count], 1U);
  elsewhere([row](Library &other) { EXPECT_TRUE(other.replace(row, book("e", "Jonas", 1998))); });
  EXPECT_EQ([matches(@"Jonas 1999") count], 0U);
  EXPECT_EQ([matches(@"e") count], 1U);
  EXPECT_EQ([matches(@"c") count], 0U);
}

TEST_F(Remembering, WhatIsDeletedIsNotFound) {
  ASSERT_EQ([matches(@"d") count], 1U);
  execute("DELETE FROM reference WHERE identifier = 'd'");
  EXPECT_EQ([matches(@"d") count], 0U);
}

TEST_F(Remembering, EachLibraryHasItsOwnMatches) {
  ASSERT_EQ([matches(@"a") count], 1U);
  NSSet *elsewhere = [adapter_.get() referencesMatchingTag:@"a" inLibrary:library_.get()];
  EXPECT_EQ([elsewhere count], 0U);
  EXPECT_EQ([matches(@"a") count], 1U);
}

TEST_F(Remembering, FullMemoryForgetsAndGoesOn) {
  korvo::adapter::RememberedMatches few(3);
  for (int round = 0; round < 2; ++round) {
    for (NSString *tag : {@"a", @"b", @"c", @"d", @"Smith 2001", @"nobody"}) {
      const auto found = few.matching(tag, kept_.get());
      ASSERT_TRUE(found);
      EXPECT_EQ(rowsOf(*found), rowsOf(matches(tag))) << utf8(tag);
    }
  }
}

TEST_F(Remembering, ALibraryThatCannotBeReadIsNoReasonToAnswerFromMemory) {
  ASSERT_EQ([matches(@"a") count], 1U);
  [kept_.get() endTurn];
  sqlite3 *editor = nullptr;
  ASSERT_EQ(sqlite3_open(file_.c_str(), &editor), SQLITE_OK);
  ASSERT_EQ(
      sqlite3_exec(editor, "BEGIN EXCLUSIVE; DELETE FROM reference", nullptr, nullptr, nullptr),
      SQLITE_OK);
  EXPECT_EQ([matches(@"a") count], 0U);
  EXPECT_THAT(interface_.get()->notices_, ElementsAre(HasSubstr("another program is using it")));
  ASSERT_EQ(sqlite3_exec(editor, "COMMIT", nullptr, nullptr, nullptr), SQLITE_OK);
  sqlite3_close(editor);
  [kept_.get() endTurn];
  EXPECT_EQ([matches(@"a") count], 0U);
}

// A document of groups, made anew for each scan as a plug-in makes it.
using Tags = std::vector<std::vector<std::string>>;

class RememberedDocument : public Remembering {
 protected:
  NSArray *citationsFor(const Tags &tags) {
    NSMutableArray *groups = [NSMutableArray array];
    for (const auto &group : tags) {
      KOCitationGroup *made = (KOCitationGroup *)[adapter_.get() createCitationGroup];
      for (const std::string &tag : group) {
        [made addCitation:cited(korvo::adapter::stringFromUTF8(tag))];
      }
      [groups addObject:made];
    }
    groups_ = groups;
    return [adapter_.get() citationArrayForCitationGroupArray:groups];
  }

  // Groups and bibliography.
  std::vector<NSAttributedString *> scanned(NSString *style, NSArray *citations) {
    id<KorvoBibStyle> used = [adapter_.get() bibStyleNamed:style];
    [used setPropertiesInCitationArray:citations];
    std::vector<NSAttributedString *> texts;
    for (NSUInteger index = 0; index < [groups_ count]; ++index) {
      texts.push_back(
          [used attributedGroupStringForCitationArray:[[groups_ objectAtIndex:index] citations]]);
    }
    texts.push_back([used
        attributedBibliographyStringForCitationArray:citations
                                          attributes:[NSMutableDictionary dictionary]]);
    [kept_.get() endTurn];
    return texts;
  }
  std::vector<NSAttributedString *> scanned(NSString *style, const Tags &tags) {
    return scanned(style, citationsFor(tags));
  }

  NSArray *groups_ = nil;
};

const Tags someTags = {{"a"}, {"b", "c"}, {"nobody"}, {"a", "d"}};

TEST_F(RememberedDocument, AnUnchangedDocumentGetsTheSameTexts) {
  const auto first = scanned(@"apa", someTags);
  EXPECT_EQ(scanned(@"apa", someTags), first);
  EXPECT_EQ(scanned(@"apa", someTags), first);
}

TEST_F(RememberedDocument, TheSameTextIsTheSameObject) {
  const auto texts = scanned(@"apa", Tags{{"a"}, {"c"}, {"a"}});
  EXPECT_EQ(texts[0], texts[2]);
  EXPECT_NE(texts[0], texts[1]);
}

TEST_F(RememberedDocument, AChangeTakenBackAndAStyleComparedGetTheSameTexts) {
  const auto first = scanned(@"apa", someTags);
  EXPECT_NE(scanned(@"apa", Tags{{"a"}}), first);
  EXPECT_EQ(scanned(@"apa", someTags), first);
  EXPECT_NE(scanned(@"ieee", someTags), first);
  EXPECT_EQ(scanned(@"apa", someTags), first);
}

TEST_F(RememberedDocument, TheOneAskedForLongestAgoIsForgottenFirst) {
  const auto first = scanned(@"apa", Tags{{"a"}});
  for (const char *tag : {"b", "c", "d"}) {
    (void)scanned(@"apa", Tags{{tag}});
    EXPECT_EQ(scanned(@"apa", Tags{{"a"}}), first);
  }
  for (const char *tag : {"b", "c", "d", "nobody"}) {
    (void)scanned(@"apa", Tags{{tag}});
  }
  EXPECT_NE(scanned(@"apa", Tags{{"a"}}), first);
}

TEST_F(RememberedDocument, EveryWordOfACitationCounts) {
  const std::vector<std::function<void(KOCitation *)>> changes = {
      [](KOCitation *to) { [to setPageRange:@"7"]; },
      [](KOCitation *to) { [to setInTextPrependString:@"see "]; },
      [](KOCitation *to) { [to setInTextAppendString:@", again"]; },
      [](KOCitation *to) { [to setUseYearOnly:YES]; },
      [](KOCitation *to) { [to setIncludeInBody:NO]; },
      [](KOCitation *to) { [to setStripEnclosure:YES]; }};
  const std::string plain = markup(scanned(@"apa", Tags{{"c"}})[0]);
  for (const auto &change : changes) {
    NSArray *citations = citationsFor({{"c"}});
    change([citations objectAtIndex:0]);
    EXPECT_NE(markup(scanned(@"apa", citations)[0]), plain);
    EXPECT_EQ(markup(scanned(@"apa", Tags{{"c"}})[0]), plain);
  }
  NSArray *unlisted = citationsFor({{"c"}});
  [[unlisted objectAtIndex:0] setIncludeInBibliography:NO];
  EXPECT_EQ(markup(scanned(@"apa", unlisted).back()), "");
  EXPECT_NE(markup(scanned(@"apa", Tags{{"c"}}).back()), "");
  NSArray *raised = citationsFor({{"c"}});
  EXPECT_EQ(markup(scanned(@"nature", Tags{{"c"}})[0]), "<sup>1</sup>");
  [[raised objectAtIndex:0] setSuppressSuperscript:YES];
  groups_ = [NSArray arrayWithObject:[[raised objectAtIndex:0] group]];
  EXPECT_EQ(markup(scanned(@"nature", raised)[0]), "1");
}

TEST_F(RememberedDocument, AnUnresolvedCitationFollowsItsText) {
  EXPECT_EQ(markup(scanned(@"apa", Tags{{"nobody"}})[0]), "{nobody}");
  EXPECT_EQ(markup(scanned(@"apa", Tags{{"noone"}})[0]), "{noone}");
  const NewReference added = book("nobody", "New", 2020);
  ASSERT_TRUE([kept_.get() library].add({&added, 1}));
  EXPECT_EQ(markup(scanned(@"apa", Tags{{"nobody"}})[0]), "(New, 2020)");
}

TEST_F(RememberedDocument, ACorrectionOfAnotherProgramIsSeen) {
  NSArray *citations = citationsFor({{"c"}});
  EXPECT_EQ(markup(scanned(@"apa", citations)[0]), "(Jones, 1999)");
  const auto row = [(KOReference *)[matches(@"c") anyObject] row];
  elsewhere([row](Library &other) { EXPECT_TRUE(other.replace(row, book("c", "Jonas", 1998))); });
  EXPECT_EQ(markup(scanned(@"apa", citations)[0]), "(Jonas, 1998)");
  execute("DELETE FROM record; DELETE FROM reference");
  EXPECT_EQ(markup(scanned(@"apa", citations)[0]), "{c}");
}

TEST_F(RememberedDocument, AnEditedStyleFileIsReadAnew) {
  const std::string style = readFile("/usr/share/citation-style-language/styles/apa.csl");
  ASSERT_FALSE(style.empty());
  const std::filesystem::path file = directory_.write("mine.csl", style);
  const korvo::engine::Style mine{
      .name = {.baseName = "mine", .title = "Mine"}, .file = file, .locale = ""};
  korvo::adapter::DocumentFormatter formatter;
  const korvo::adapter::Citations citations = korvo::adapter::citationsIn(citationsFor({{"c"}}));
  const auto groups = korvo::adapter::groupsOf(citations);
  const auto text = [&] {
    const auto texts = formatter.format(mine, citations, groups);
    return texts ? markup((*texts)->groups[0].get()) : texts.error();
  };
  EXPECT_EQ(text(), "(Jones, 1999)");
  directory_.write("mine.csl", readFile("/usr/share/citation-style-language/styles/ieee.csl"));
  EXPECT_EQ(text(), "[1]");
  directory_.write("mine.csl", "");
  EXPECT_NE(text(), "[1]");
  directory_.write("mine.csl", style);
  EXPECT_EQ(text(), "(Jones, 1999)");
}

// Edits of a draft, of the library by this program and by another, and changes of the style, as
// they come: after each, every text and what it is converted to is compared with the answer of a
// host that has just met the document.
class RandomEdits : public RememberedDocument {
 protected:
  int upTo(int limit) { return std::uniform_int_distribution(0, limit - 1)(random_); }

  std::string anyTag() {
    return std::vector<std::string>{
        "a", "b", "c", "d", "e", "nobody", "Smith 2001"}[static_cast<std::size_t>(upTo(7))];
  }

  // Unless another reference bears its identifier, which changes nothing.
  void correct(Library &library, const NewReference &reference) {
    const auto corrected = library.replace(1 + upTo(4), reference);
    if (!corrected) {
      EXPECT_TRUE(corrected.error().ends_with("already")) << corrected.error();
    }
  }

  void edit() {
    const auto group = static_cast<std::size_t>(upTo(static_cast<int>(tags_.size())));
    const auto reference = [this] {
      return book(std::string(1, static_cast<char>('a' + upTo(5))), upTo(2) == 0 ? "Smith" : "Doe",
                  1990 + upTo(3));
    };
    switch (upTo(8)) {
      case 0:
        tags_[group].push_back(anyTag());
        break;
      case 1:
        tags_[group][0] = anyTag();
        break;
      case 2:
        tags_.insert(tags_.begin() + static_cast<std::ptrdiff_t>(group), {anyTag()});
        break;
      case 3:
        if (tags_.size() > 2) {
          tags_.erase(tags_.begin() + static_cast<std::ptrdiff_t>(group));
        }
        break;
      case 4:
        correct([kept_.get() library], reference());
        break;
      case 5:
        elsewhere([&](Library &other) { correct(other, reference()); });
        break;
      case 6:
        style_ =
            std::vector<NSString *>{@"apa", @"ieee", @"nature"}[static_cast<std::size_t>(upTo(3))];
        break;
      default:
        break;  // again, unchanged
    }
  }

  void expectFreshAnswer(const std::vector<NSAttributedString *> &texts, NSArray *citations) {
    const korvo::adapter::Citations cited = korvo::adapter::citationsIn(citations);
    const auto groups = korvo::adapter::groupsOf(cited);
    const korvo::adapter::CitedDocument document = korvo::adapter::readDocument(cited, groups);
    std::vector<korvo::engine::CiteGroup> asked(document.asked.size());
    for (std::size_t index = 0; index < asked.size(); ++index) {
      const auto [first, count] = document.asked[index];
      korvo::adapter::readCites(std::span(cited).subspan(first, count), document, asked[index]);
    }
    const auto answer = fresh_.formatDocument(
        *catalog_.find(utf8(style_)),
        [&](std::string_view item) { return std::optional(document.items.at(std::string(item))); },
        asked, true);
    ASSERT_TRUE(answer);
    ASSERT_EQ(texts.size(), groups.size() + 1);
    std::size_t answered = 0;
    for (std::size_t index = 0; index < groups.size(); ++index) {
      const auto &group = document.groups[index];
      NSAttributedString *expected = group.isAsked
                                         ? korvo::adapter::attributedText(answer->group(answered++))
                                         : group.written.get();
      EXPECT_EQ(markup(texts[index]), markup(expected));
      EXPECT_EQ(utf8([adapter_.get() pidginRTFForAttributedString:texts[index]]),
                utf8(korvo::adapter::pidginRTF(expected)));
    }
    NSAttributedString *bibliography = korvo::adapter::attributedBibliography(answer->bibliography);
    EXPECT_EQ(markup(texts.back()), markup(bibliography));
    const NSRange all = NSMakeRange(0, [bibliography length]);
    EXPECT_TRUE([[texts.back() RTFFromRange:all
                         documentAttributes:nil] isEqual:[bibliography RTFFromRange:all
                                                                 documentAttributes:nil]]);
  }

  std::mt19937 random_{20261121};
  Tags tags_ = someTags;
  NSString *style_ = @"apa";
  korvo::engine::CitationProcessor fresh_;
  korvo::engine::StyleCatalog catalog_ = korvo::engine::StyleCatalog::installed();
};

TEST_F(RandomEdits, AreAnsweredAsByAHostThatRemembersNothing) {
  for (int step = 0; step < test_support::effort(50, 20); ++step) {
    SCOPED_TRACE(step);
    NSAutoreleasePool *turn = [[NSAutoreleasePool alloc] init];
    edit();
    NSArray *citations = citationsFor(tags_);
    for (NSUInteger index = 0; index < [citations count]; ++index) {
      const auto &tag = [(KOCitation *)[citations objectAtIndex:index] parts].searchString;
      const auto rows = [kept_.get() library].matching(utf8(korvo::adapter::stringFromUTF16(tag)));
      ASSERT_TRUE(rows);
      EXPECT_EQ(rowsOf(matches(korvo::adapter::stringFromUTF16(tag))),
                std::set(rows->begin(), rows->end()));
    }
    expectFreshAnswer(scanned(style_, citations), citations);
    [turn release];
    if (HasFailure()) {
      break;
    }
  }
}

class ConvertedText : public korvo_test::AdapterFixture {
 protected:
  ConvertedText() {
    const korvo::engine::FormattedText text{
        {korvo::engine::Run{.text = u"plain "}, korvo::engine::Run{.text = u"é{", .italic = true}}};
    plain_ = korvo::adapter::attributedText(text);
    text_ = [[[KOConvertedText alloc] initWithAttributedString:plain_] autorelease];
  }

  static NSData *rtf(NSAttributedString *text, NSRange range, NSDictionary *attributes) {
    return [text RTFFromRange:range documentAttributes:attributes];
  }

  NSAttributedString *plain_ = nil;
  KOConvertedText *text_ = nil;
};

TEST_F(ConvertedText, IsTheTextThatItWasMadeOf) {
  EXPECT_TRUE([text_ isEqualToAttributedString:plain_]);
  EXPECT_EQ(markup(text_), "plain <i>é{</i>");
  EXPECT_EQ([[text_ copy] autorelease], text_);
  KOConvertedText *bare = [[[KOConvertedText alloc] initWithString:@"x"
                                                        attributes:nil] autorelease];
  EXPECT_EQ(markup(bare), "x");
}

TEST_F(ConvertedText, IsConvertedOnce) {
  EXPECT_EQ(utf8([text_ pidginRTF]), utf8(korvo::adapter::pidginRTF(plain_)));
  EXPECT_EQ([text_ pidginRTF], [text_ pidginRTF]);
}

TEST_F(ConvertedText, ItsRTFIsThatOfTheRangeAndTheAttributesAskedFor) {
  const NSRange all = NSMakeRange(0, [plain_ length]);
  const NSRange part = NSMakeRange(2, 5);
  NSDictionary *narrow = [NSDictionary dictionaryWithObject:[NSNumber numberWithInt:10]
                                                     forKey:NSLeftMarginDocumentAttribute];
  NSDictionary *wide = [NSDictionary dictionaryWithObject:[NSNumber numberWithInt:99]
                                                   forKey:NSLeftMarginDocumentAttribute];
  ASSERT_FALSE([rtf(plain_, all, narrow) isEqual:rtf(plain_, all, wide)]);
  for (NSDictionary *attributes :
       {narrow, narrow, wide, static_cast<NSDictionary *>(nil), narrow}) {
    EXPECT_TRUE([rtf(text_, all, attributes) isEqual:rtf(plain_, all, attributes)]);
    EXPECT_TRUE([rtf(text_, part, attributes) isEqual:rtf(plain_, part, attributes)]);
  }
  EXPECT_EQ(rtf(text_, all, narrow), rtf(text_, all, narrow));
}

TEST_F(ConvertedText, AttributesThatAreChangedAfterwardsAreOtherAttributes) {
  const NSRange all = NSMakeRange(0, [plain_ length]);
  NSMutableDictionary *attributes =
      [NSMutableDictionary dictionaryWithObject:[NSNumber numberWithInt:10]
                                         forKey:NSLeftMarginDocumentAttribute];
  (void)rtf(text_, all, attributes);
  [attributes setObject:[NSNumber numberWithInt:99] forKey:NSLeftMarginDocumentAttribute];
  EXPECT_TRUE([rtf(text_, all, attributes) isEqual:rtf(plain_, all, attributes)]);
}

}  // namespace
