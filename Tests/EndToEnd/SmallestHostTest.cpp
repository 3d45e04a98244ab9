// The example for host authors is a host: the plug-in works in it, and a document is scanned by it.
#include "Applications.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>

namespace {

using namespace endtoend;
using testing::HasSubstr;
using testing::Not;

TEST(SmallestHost, ScansADocumentWithItsOneReference) {
  const TemporaryDirectory directory;
  writeFile(
      directory.path() / "draft.rtf",
      "{\\rtf1\\ansi Species change \\{Darwin 1859\\}, says no other \\{Nobody 1900\\}.\\par}");
  ChildProcess host({program("smallest-host"), PLUGIN_BUNDLE});
  ASSERT_TRUE(host.waitForLine("ready")) << host.standardError();
  EXPECT_THAT(host.standardOutput(), HasSubstr("Mellel, version 2, Word processor"));

  const Scan copy = scanFile(directory.path() / "draft.rtf", {"--style", "Smallest"});
  EXPECT_EQ(copy.result.status, 0) << copy.result.standardError;
  EXPECT_THAT(copy.copy, HasSubstr("(Darwin, 1859)"));
  EXPECT_THAT(copy.copy, Not(HasSubstr("\\{Darwin 1859\\}")));
  EXPECT_THAT(copy.copy, HasSubstr("On the Origin of Species"));
  EXPECT_THAT(host.standardError(), HasSubstr("Citation 2 Nobody 1900: No matches were found."));
}

TEST(SmallestHost, SaysThatAFolderIsNoPlugIn) {
  const TemporaryDirectory directory;
  const Result result = run({program("smallest-host"), directory.path().string()});
  EXPECT_EQ(result.status, 1);
  EXPECT_THAT(result.standardError, HasSubstr("is no word-processor plug-in"));
}

}  // namespace
