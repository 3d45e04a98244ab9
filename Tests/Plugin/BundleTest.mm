// The bundle as a host meets it: loaded at run time, known by nothing but the host contract. The
// other tests load it too, but send it private messages; here it is asked only what a host may ask.

#import <HostContract/HostContract.h>
#include <Tests/Support/ChildProcess.h>

#import <Cocoa/Cocoa.h>
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <set>
#include <sstream>
#include <string>

namespace {

NSBundle *bundle() {
  return [NSBundle bundleWithPath:[NSString stringWithUTF8String:PLUGIN_BUNDLE]];
}

// The names, without versions, that a shared object wants from others.
std::set<std::string> undefinedSymbols(const std::string &path) {
  std::istringstream words(
      test_support::run({"nm", "-D", "--undefined-only", path}).standardOutput);
  std::set<std::string> names;
  for (std::string kind, name; words >> kind >> name;) {
    names.insert(name.substr(0, name.find('@')));
  }
  return names;
}

class PluginBundle : public testing::Test {
 protected:
  void SetUp() override { pool_ = [[NSAutoreleasePool alloc] init]; }
  void TearDown() override { [pool_ drain]; }

 private:
  NSAutoreleasePool *pool_ = nil;
};

TEST_F(PluginBundle, NamesItsPrincipalClassAndIdentifier) {
  NSDictionary *information = [bundle() infoDictionary];
  EXPECT_TRUE([[information objectForKey:@"NSPrincipalClass"] isEqual:@"KorvoMellelAgent"]);
  EXPECT_TRUE([[bundle() bundleIdentifier] isEqual:@"org.korvo.mellel-plugin"]);
}

// GNUstep has classes of these names, which carry no event to another process: a plug-in that got
// them would wait for ever.
TEST_F(PluginBundle, TakesThePlatformsAppleEventClassesAndNoneOfGNUsteps) {
  const std::set<std::string> wanted = undefinedSymbols([[bundle() executablePath] UTF8String]);
  for (const std::string name : {"AppleEventManager", "AppleEventDescriptor"}) {
    EXPECT_TRUE(wanted.contains("__objc_class_name_Korvo" + name));
    EXPECT_FALSE(wanted.contains("__objc_class_name_NS" + name));
  }
}

TEST_F(PluginBundle, PrincipalClassAnswersTheHostsQuestions) {
  Class agent = [bundle() principalClass];
  ASSERT_NE(agent, Nil);
  EXPECT_TRUE([agent conformsToProtocol:@protocol(KorvoPlugin)]);
  EXPECT_TRUE([agent conformsToProtocol:@protocol(KorvoWordProcessorIntegrationPlugin)]);
  EXPECT_TRUE([[agent registrationName] isEqual:@"Mellel"]);
  EXPECT_EQ([(Class<KorvoPlugin>)agent version], 2);
}

TEST_F(PluginBundle, BringsTheDialogAndTheTextsAlong) {
  EXPECT_NE([bundle() pathForResource:@"MellelScanDialog" ofType:@"xib"], nil);
  NSString *path = [bundle() pathForResource:@"Plugin"
                                      ofType:@"strings"
                                 inDirectory:nil
                             forLocalization:@"en"];
  ASSERT_NE(path, nil);
  NSDictionary *texts = [NSDictionary dictionaryWithContentsOfFile:path];
  EXPECT_EQ([texts count], 8u);
  // English texts are their own keys.
  NSEnumerator *keys = [texts keyEnumerator];
  while (NSString *key = [keys nextObject]) {
    EXPECT_TRUE([[texts objectForKey:key] isEqual:key]) << [key UTF8String];
  }
}

// What Mellel sends cannot make the plug-in open a file or start a program: it has nothing to do it
// with. (Its dialog and its texts are found by Cocoa, in the bundle, by names of its own.)
TEST_F(PluginBundle, CallsNothingThatOpensFilesOrConnectionsOrStartsPrograms) {
  const std::set<std::string> called = undefinedSymbols([[bundle() executablePath] UTF8String]);
  ASSERT_TRUE(called.contains("AESendMessage"));
  for (const char *name : {"open",
                           "open64",
                           "openat",
                           "creat",
                           "fopen",
                           "fopen64",
                           "freopen",
                           "unlink",
                           "remove",
                           "rename",
                           "mkstemp",
                           "mkostemp",
                           "shm_open",
                           "memfd_create",
                           "socket",
                           "connect",
                           "system",
                           "popen",
                           "fork",
                           "vfork",
                           "execve",
                           "execvp",
                           "execv",
                           "dlopen",
                           "dlsym",
                           "posix_spawn",
                           "posix_spawnp",
                           "mmap",
                           "__objc_class_name_NSFileManager",
                           "__objc_class_name_NSFileHandle",
                           "__objc_class_name_NSTask",
                           "__objc_class_name_NSURL",
                           "__objc_class_name_NSStream",
                           "__objc_class_name_NSConnection"}) {
    EXPECT_FALSE(called.contains(name)) << name;
  }
  for (const std::string &name : called) {
    EXPECT_EQ(name.find("basic_filebuf"), std::string::npos) << name;
    EXPECT_EQ(name.find("filesystem"), std::string::npos) << name;
  }
}

TEST_F(PluginBundle, ExportsTheOutcomesOfTheScanDialog) {
  ASSERT_NE([bundle() principalClass], Nil);
  void *code =
      dlopen([[bundle() executablePath] fileSystemRepresentation], RTLD_LAZY | RTLD_NOLOAD);
  ASSERT_NE(code, nullptr);
  const auto valueOf = [code](const char *name) {
    const auto *value = static_cast<const int32_t *>(dlsym(code, name));
    return value == nullptr ? -99 : *value;
  };
  EXPECT_EQ(valueOf("KOMellelScanWaitingForUser"), -1);
  EXPECT_EQ(valueOf("KOMellelScanNoAction"), 0);
  EXPECT_EQ(valueOf("KOMellelScanReformatAction"), 1);
  EXPECT_EQ(valueOf("KOMellelScanGenerateCopyAction"), 2);
  auto *key = static_cast<NSString **>(dlsym(code, "KOMellelScanLastStylePrefKey"));
  ASSERT_NE(key, nullptr);
  EXPECT_TRUE([*key isEqual:@"Last Style Used For Mellel Scan"]);
  dlclose(code);
}

}  // namespace
