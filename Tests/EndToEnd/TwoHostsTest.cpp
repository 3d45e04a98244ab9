// Two hosts, each on a bus of its own, have one library open: what is changed by the one is cited
// as changed by the other at once.
#include "Applications.h"
#include "Window.h"

#include <Tests/Support/PrivateBus.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <thread>

namespace {

using namespace endtoend;
using namespace std::chrono_literals;
using testing::HasSubstr;

void useBus(const std::string &address) { setenv("DBUS_SESSION_BUS_ADDRESS", address.c_str(), 1); }

TEST(TwoHosts, SeeEachOthersChangesOfOneLibraryAtOnce) {
  const TemporaryDirectory folder;
  const auto library = folder.path() / "my.korvolib";
  const auto draft = folder.path() / "draft.rtf";
  const auto import = [&](const std::string &entry) {
    writeFile(folder.path() / "one.bib", entry);
    return run({program("korvo"), "import", (folder.path() / "one.bib").string(), "--into",
                library.string()});
  };
  ASSERT_EQ(import("@book{doe2001,title={Old Title},author={Doe, Jane},year=2001}").status, 0);
  writeFile(draft, "{\\rtf1\\ansi So \\{Doe 2001\\} and \\{Roe 2002\\}.\\par}");

  const std::string firstBus = std::getenv("DBUS_SESSION_BUS_ADDRESS");
  Host first({}, library);
  ASSERT_TRUE(first.isReady()) << first.process().standardError();
  const test_support::PrivateBus bus;
  const std::string secondBus = std::getenv("DBUS_SESSION_BUS_ADDRESS");
  Host second({}, library);
  ASSERT_TRUE(second.isReady()) << second.process().standardError();
  EXPECT_THAT(scanFile(draft, {"--style", "apa"}).copy, HasSubstr("\\{Roe 2002\\}"));

  // A third program adds a reference, the first host corrects one; the second sees both.
  const Result added = import("@book{roe2002,title={New},author={Roe, Ann},year=2002}");
  EXPECT_EQ(added.status, 0) << added.standardError;
  useBus(firstBus);
  ASSERT_EQ(run({program("mellel"), "open", "Doe 2001"}).status, 0);
  const Editor editor("doe2001");
  ASSERT_TRUE(editor.isOpen());
  editor.clickTitle();
  editor.press("x");
  editor.clickSave();
  useBus(secondBus);
  const auto end = std::chrono::steady_clock::now() + patience;
  std::string copy;
  while (copy.find("Old Titlex") == std::string::npos && std::chrono::steady_clock::now() < end) {
    std::this_thread::sleep_for(100ms);
    copy = scanFile(draft, {"--style", "apa"}).copy;
  }
  EXPECT_THAT(copy, HasSubstr("Old Titlex"));
  EXPECT_THAT(copy, HasSubstr("(Roe, 2002)"));
  useBus(firstBus);
  EXPECT_EQ(scanFile(draft, {"--style", "apa"}).copy, copy);
}

}  // namespace
