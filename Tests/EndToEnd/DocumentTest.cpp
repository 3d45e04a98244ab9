// A scan changes what it was asked to change, and nothing else.
#include "Applications.h"
#include "Documents.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <utility>

namespace {

using namespace endtoend;
using testing::AllOf;
using testing::Each;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

// How deep the groups still are at the end; nothing may follow the end of the outermost one.
int depthAtEnd(const std::string &rtf) {
  int depth = 0;
  for (std::size_t position = 0; position < rtf.size(); ++position) {
    if (rtf[position] == '\\') {
      ++position;
    } else if (rtf[position] == '{') {
      ++depth;
    } else if (rtf[position] == '}') {
      --depth;
    }
  }
  return depth;
}

class Drafts : public testing::TestWithParam<const char *> {};

TEST_P(Drafts, KeepEveryByteOutsideTheCitations) {
  Host host;
  const Scan copy = scan(GetParam(), {"--style", "apa"});
  ASSERT_EQ(copy.result.status, 0) << copy.result.standardError;
  EXPECT_THAT(copy.formattedRTF, Not(IsEmpty()));
  EXPECT_EQ(depthAtEnd(copy.copy), 0);
  EXPECT_TRUE(copy.copy.ends_with("}")) << copy.copy.substr(copy.copy.size() - 40);
}

TEST_P(Drafts, KeepWhatCouldNotBeFormatted) {
  Host host;
  const Scan copy = scan(GetParam(), {"--style", "apa"});
  ASSERT_THAT(copy.formattedRTF, Not(IsEmpty()));
  std::vector<std::string> kept;
  for (const auto &[citation, rtf] : copy.formattedRTF) {
    if (textOf(rtf).find('{') != std::string::npos) {
      EXPECT_EQ(textOf(rtf), citation);
      kept.push_back(citation);
    }
  }
  // One matches nothing and one matches several references.
  EXPECT_THAT(kept, SizeIs(2));
}

TEST_P(Drafts, GetTheBibliographyInPlaceOfItsParagraph) {
  Host host;
  const Scan copy = scan(GetParam(), {"--style", "apa"});
  EXPECT_THAT(textOf(copy.copy), Not(HasSubstr("{bibliography}")));
  EXPECT_THAT(copy.bibliographyRTF, AllOf(HasSubstr("\\fi-"), HasSubstr("\\i")));
  const std::string text = copy.bibliography();
  EXPECT_GT(std::count(text.begin(), text.end(), '\n'), 30) << text;
}

TEST_P(Drafts, StayWithoutABibliographyWhenNoneIsWanted) {
  Host host;
  const Scan copy = scan(GetParam(), {"--style", "apa", "--no-bibliography"});
  ASSERT_EQ(copy.result.status, 0) << copy.result.standardError;
  EXPECT_THAT(copy.formattedRTF, Not(IsEmpty()));
  EXPECT_THAT(copy.bibliography(), Not(HasSubstr("(1")));
}

TEST_P(Drafts, AreNeverTouched) {
  const TemporaryDirectory directory;
  const auto draft = directory.path() / GetParam();
  std::filesystem::copy_file(example(GetParam()), draft);
  struct stat before = {};
  ASSERT_EQ(stat(draft.c_str(), &before), 0);
  Host host;
  ASSERT_EQ(scanFile(draft, {"--style", "apa"}).result.status, 0);
  struct stat after = {};
  ASSERT_EQ(stat(draft.c_str(), &after), 0);
  EXPECT_EQ(readFile(draft), readFile(example(GetParam())));
  EXPECT_EQ(after.st_ino, before.st_ino);
  EXPECT_EQ(after.st_mtim.tv_sec, before.st_mtim.tv_sec);
  EXPECT_EQ(after.st_mtim.tv_nsec, before.st_mtim.tv_nsec);
}

TEST_P(Drafts, GiveTheSameCopyASecondTime) {
  Host host;
  const Scan first = scan(GetParam(), {"--style", "ieee"});
  const Scan other = scan(GetParam(), {"--style", "apa"});
  const Scan second = scan(GetParam(), {"--style", "ieee"});
  EXPECT_EQ(second.copy, first.copy);
  EXPECT_NE(other.copy, first.copy);
}

std::string applicationThatSaved(const testing::TestParamInfo<const char *> &draft) {
  return std::string(draft.param) == "draft-textedit.rtf" ? "TextEdit" : "LibreOffice";
}

INSTANTIATE_TEST_SUITE_P(From, Drafts,
                         testing::Values("draft-libreoffice.rtf", "draft-textedit.rtf"),
                         applicationThatSaved);

// Another word processor's opinion: the text outside the citations, as LibreOffice reads it.
TEST(Document, ReadsTheSameOutsideTheCitationsInAnotherWordProcessor) {
  if (run({"sh", "-c", "command -v soffice"}).status != 0) {
    GTEST_SKIP() << "LibreOffice is not installed";
  }
  Host host;
  const Scan copy = scan("draft-libreoffice.rtf", {"--style", "apa"});
  const TemporaryDirectory directory;
  writeFile(directory.path() / "copy.rtf", copy.copy);
  writeFile(directory.path() / "original.rtf", copy.original);
  const Result converted =
      run({"soffice", "--headless",
           "-env:UserInstallation=file://" + (directory.path() / "profile").string(),
           "--convert-to", "txt:Text (encoded):UTF8", "--outdir", directory.path().string(),
           (directory.path() / "original.rtf").string(), (directory.path() / "copy.rtf").string()});
  ASSERT_EQ(converted.status, 0) << converted.standardError;
  const std::string original = readFile(directory.path() / "original.txt");
  const std::string formatted = readFile(directory.path() / "copy.txt");
  ASSERT_THAT(original, HasSubstr("{Kuhn 1961#kuhn1961@161–193}"));
  ASSERT_THAT(formatted, HasSubstr("(Kuhn, 1961, pp. 161–193)"));

  std::size_t position = 0;
  std::size_t begin = 0;
  const std::size_t end = original.find("\nReferences");
  for (std::size_t brace = original.find('{'); brace < end; brace = original.find('{', begin)) {
    const std::string between = original.substr(begin, brace - begin);
    position = formatted.find(between, position);
    ASSERT_NE(position, std::string::npos) << between;
    position += between.size();
    begin = original.find('}', brace) + 1;
  }
  EXPECT_NE(formatted.find(original.substr(begin, end - begin), position), std::string::npos);
}

}  // namespace
