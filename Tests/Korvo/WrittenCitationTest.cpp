#include <Formats/CitationText.h>
#include <Formats/Unicode.h>
#include <StandIns/Korvo/Adapter/WrittenCitation.h>
#include <Tests/Support/AllStrings.h>

#include <gtest/gtest.h>

using korvo::adapter::CitationParts;
using korvo::adapter::writtenCitation;

namespace {

CitationParts partsOf(const formats::CitationText &text) {
  return {.searchString = std::u16string(text.searchText),
          .pageRange = std::u16string(text.pageRange.value_or(u"")),
          .prependString = std::u16string(text.prependText.value_or(u"")),
          .appendString = std::u16string(text.appendText.value_or(u"")),
          .includeInBody = !text.excludeFromBody,
          .includeInBibliography = !text.excludeFromBibliography,
          .useYearOnly = text.useYearOnly,
          .suppressSuperscript = text.suppressSuperscript,
          .stripEnclosure = text.stripEnclosure};
}

}  // namespace

TEST(WrittenCitation, HasEveryMarkerInTheOrderInWhichTheyAreRead) {
  const CitationParts parts{.searchString = u"Smith 2001",
                            .pageRange = u"45-47",
                            .prependString = u"see ",
                            .appendString = u", fig. 2",
                            .includeInBody = false,
                            .includeInBibliography = false,
                            .useYearOnly = true,
                            .suppressSuperscript = true,
                            .stripEnclosure = true};
  EXPECT_EQ(writtenCitation(parts, u"SMI2001"),
            u"!^%_*\\see \\Smith 2001\\, fig. 2\\#SMI2001@45-47");
}

TEST(WrittenCitation, HasNothingThatWasNotAskedFor) {
  EXPECT_EQ(writtenCitation({.searchString = u"Nobody 1900"}, u""), u"Nobody 1900");
}

// Every text of up to six letters, parsed, written and parsed again: the same parts.
TEST(WrittenCitation, ReadsAsTheSamePartsAgain) {
  const std::vector<std::u16string> letters = {u"!", u"%", u"\\", u"@", u"#", u" ", u"a"};
  std::size_t checked = 0;
  forEachString(letters, 6, [&](const std::u16string &text) {
    const formats::CitationText parsed = formats::parseCitationText(text);
    if (parsed.searchText.empty()) {
      return;  // no citation at all
    }
    const CitationParts parts = partsOf(parsed);
    const std::u16string tag(parsed.tag.value_or(u""));
    const std::u16string written = writtenCitation(parts, tag);
    ++checked;
    ASSERT_EQ(partsOf(formats::parseCitationText(written)), parts)
        << formats::encodeUTF8(text) << " became " << formats::encodeUTF8(written);
  });
  EXPECT_GT(checked, 10'000U);
}
