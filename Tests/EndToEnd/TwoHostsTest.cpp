// Two hosts, each on a bus of its own, have one library open: what is changed by the one is cited
// as changed by the other at once. On one display, neither stands still because of the other.
#include "Applications.h"
#include "Window.h"

#include <Tests/Support/PrivateBus.h>
#include <Tests/Support/WaitUntil.h>

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace {

using namespace endtoend;
using test_support::waitUntil;
using testing::Each;
using testing::HasSubstr;
using testing::Ne;
using testing::ResultOf;

// Inodes of all Unix sockets that somebody listens on.
std::set<std::string> listeningSockets() {
  constexpr unsigned long listens = 0x10000;  // __SO_ACCEPTCON of the kernel
  std::ifstream table("/proc/net/unix");
  std::set<std::string> inodes;
  std::string line;
  std::getline(table, line);
  while (std::getline(table, line)) {
    std::istringstream columns(line);
    std::string passedOver, flags, inode;
    columns >> passedOver >> passedOver >> passedOver >> flags >> passedOver >> passedOver >> inode;
    if ((std::stoul(flags, nullptr, 16) & listens) != 0) {
      inodes.insert(inode);
    }
  }
  return inodes;
}

std::filesystem::path folderOf(pid_t process) { return "/proc/" + std::to_string(process); }

unsigned long statusFlags(pid_t process, const std::string &descriptor) {
  std::ifstream information(folderOf(process) / "fdinfo" / descriptor);
  std::string word;
  while (information >> word && word != "flags:") {
  }
  information >> word;
  return std::stoul(word, nullptr, 8);
}

// Of the sockets that a process listens on.
std::vector<unsigned long> flagsOfListeningSockets(pid_t process) {
  const std::set<std::string> listening = listeningSockets();
  std::vector<unsigned long> flags;
  for (const auto &entry : std::filesystem::directory_iterator(folderOf(process) / "fd")) {
    std::error_code closedMeanwhile;
    const std::string name = std::filesystem::read_symlink(entry.path(), closedMeanwhile).string();
    const std::string kind = "socket:[";
    if (name.starts_with(kind) &&
        listening.contains(name.substr(kind.size(), name.size() - kind.size() - 1))) {
      flags.push_back(statusFlags(process, entry.path().filename().string()));
    }
  }
  return flags;
}

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
  const Result opened = run({program("mellel"), "open", "Doe 2001"});
  ASSERT_EQ(opened.status, 0) << opened.standardError;
  const Editor editor("doe2001");
  ASSERT_TRUE(editor.isOpen());
  editor.clickTitle();
  editor.press("x");
  editor.clickSave();
  useBus(secondBus);
  std::string copy;
  waitUntil(patience, [&] {
    copy = scanFile(draft, {"--style", "apa"}).copy;
    return copy.find("Old Titlex") != std::string::npos;
  });
  EXPECT_THAT(copy, HasSubstr("Old Titlex"));
  EXPECT_THAT(copy, HasSubstr("(Roe, 2002)"));
  useBus(firstBus);
  EXPECT_EQ(scanFile(draft, {"--style", "apa"}).copy, copy);
}

// GNUstep may accept one connection twice: a host that waited for the second stood still as soon as
// another one had started on the same display.
TEST(TwoHosts, DoNotWaitForConnectionsThatAreAcceptedAlready) {
  Host host;
  ASSERT_TRUE(host.isReady()) << host.process().standardError();
  // One for the server of notifications, and one, a moment after the start, for other programs.
  std::vector<unsigned long> flags;
  EXPECT_TRUE(waitUntil(patience, [&] {
    flags = flagsOfListeningSockets(host.process().number());
    return flags.size() >= 2;
  }));
  EXPECT_THAT(flags, Each(ResultOf([](unsigned long each) { return each & O_NONBLOCK; }, Ne(0))));
}

}  // namespace
