// No room on the disk while the host runs: what an author changes in an editor is either in the
// library or told not to be, and the host goes on.
#include "Applications.h"
#include "Window.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <chrono>
#include <thread>

namespace {

using namespace endtoend;
using namespace std::chrono_literals;
using testing::HasSubstr;
using testing::Not;

TEST(FullDisk, AnEditThatFindsNoRoomIsToldAndTheLibraryStays) {
  const TemporaryDirectory folder;
  const auto library = folder.path() / "my.korvolib";
  const auto draft = folder.path() / "draft.rtf";
  writeFile(folder.path() / "one.bib",
            "@book{doe2001,title={Old Title},author={Doe, Jane},year=2001,publisher={Press}}\n");
  ASSERT_EQ(run({program("korvo"), "import", (folder.path() / "one.bib").string(), "--into",
                 library.string()})
                .status,
            0);
  writeFile(draft, "{\\rtf1\\ansi So \\{Doe 2001\\}.\\par}");
  const std::string bytes = readFile(library);
  Host host({}, library);
  ChildProcess &korvo = host.process();
  ASSERT_TRUE(host.isReady()) << korvo.standardError();
  // No file may grow past some kilobytes: what a full disk comes to, without filling one.
  rlimit room = {};
  ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &room), 0);
  const rlimit littleRoom = {.rlim_cur = 2048, .rlim_max = room.rlim_max};
  ASSERT_EQ(prlimit(korvo.number(), RLIMIT_FSIZE, &littleRoom, nullptr), 0);
  ASSERT_EQ(run({program("mellel"), "open", "Doe 2001"}).status, 0);
  const Editor editor("doe2001");
  ASSERT_TRUE(editor.isOpen());
  editor.clickTitle();
  editor.press("x");
  editor.clickSave();
  std::this_thread::sleep_for(500ms);
  EXPECT_EQ(readFile(library), bytes);
  const Scan copy = scanFile(draft, {"--style", "apa"});
  EXPECT_EQ(copy.result.status, 0) << copy.result.standardError;
  EXPECT_THAT(copy.copy, HasSubstr("Old Title"));
  EXPECT_THAT(copy.copy, Not(HasSubstr("Old Titlex")));
  // What was typed is still in the editor, and can be saved once there is room.
  ASSERT_EQ(prlimit(korvo.number(), RLIMIT_FSIZE, &room, nullptr), 0);
  editor.clickSave();
  const auto end = std::chrono::steady_clock::now() + patience;
  bool isSaved = false;
  while (!isSaved && std::chrono::steady_clock::now() < end) {
    std::this_thread::sleep_for(100ms);
    isSaved = scanFile(draft, {"--style", "apa"}).copy.find("Old Titlex") != std::string::npos;
  }
  EXPECT_TRUE(isSaved) << korvo.standardOutput() << korvo.standardError();
}

}  // namespace
