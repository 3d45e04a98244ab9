// Names that were made to mislead whoever reads what the programs print: a file's name may hold
// everything but a slash and a NUL.
#include "Applications.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace {

using namespace endtoend;
using testing::HasSubstr;

// Clears the screen, forges a line, and turns round what stands behind it.
const std::string hostileName = "a\x1B[2J\nwrote: forged\r\u009B1m\u202Efdp\u2066\u2028\x07\x7F";
// GNUstep ends a program with such an argument before its main function.
const std::string noUTF8 = "\xFF";

// Only what the programs themselves end is a line, and no byte commands anything.
void expectHarmless(const std::string &output) {
  EXPECT_TRUE(std::ranges::none_of(output, [](char byte) {
    return (static_cast<unsigned char>(byte) < 0x20 && byte != '\n') || byte == 0x7F;
  })) << output;
  for (const char *command : {"\u009B", "\u202E", "\u2066", "\u2028", "\xFF", "\nwrote: forged"}) {
    EXPECT_EQ(output.find(command), std::string::npos) << output;
  }
}

class HostileNames : public testing::Test {
 protected:
  HostileNames() { std::filesystem::create_directory(directory()); }

  std::filesystem::path directory() const { return temporary_.path() / hostileName; }
  std::filesystem::path file(const std::string &extension) const {
    return directory() / (hostileName + extension);
  }
  std::filesystem::path copyOf(const std::string &exampleName, const std::string &extension) const {
    std::filesystem::copy_file(example(exampleName), file(extension));
    return file(extension);
  }

 private:
  const TemporaryDirectory temporary_;
};

TEST_F(HostileNames, OfLibrariesCommandNoTerminal) {
  const auto library = copyOf("library.bib", ".bib");
  writeFile(directory() / "broken.bib", "@book{" + hostileName + ",\n title = {Never closed\n");
  const auto into = file(".korvolib");
  const Result imported = run({program("korvo"), "import", library.string(),
                               (directory() / "broken.bib").string(), "--into", into.string()});
  EXPECT_THAT(imported.standardOutput + imported.standardError, HasSubstr("forged"));
  expectHarmless(imported.standardOutput);
  expectHarmless(imported.standardError);
  for (const std::string &word : {file(".txt").string(), "--" + hostileName, hostileName}) {
    const Result refused = run({program("korvo"), "--library", word});
    EXPECT_NE(refused.status, 0);
    EXPECT_THAT(refused.standardError, HasSubstr("forged"));
    expectHarmless(refused.standardError);
  }
}

TEST_F(HostileNames, OfDocumentsAndCopiesCommandNoTerminal) {
  const auto draft = copyOf("draft-textedit.rtf", ".rtf");
  Host host({"--select", "hoare1969"});
  ASSERT_TRUE(host.isReady()) << host.process().standardError();
  const auto out = (directory() / ("copy" + hostileName + noUTF8)).string();
  const std::vector<std::vector<std::string>> commands = {
      {"scan", draft.string(), "--style", "apa", "-o", out},
      {"live", draft.string(), "--style", "apa", "-o", out},
      {"insert", "--into", draft.string(), "--at", "The", "-o", out}};
  for (std::vector<std::string> command : commands) {
    command.insert(command.begin(), program("mellel"));
    const Result done = run(command);
    EXPECT_EQ(done.status, 0) << done.standardError;
    EXPECT_THAT(done.standardOutput, HasSubstr("wrote: "));
    EXPECT_THAT(done.standardOutput, HasSubstr("forged"));
    expectHarmless(done.standardOutput);
    expectHarmless(done.standardError);
  }
}

TEST_F(HostileNames, ThatAreWrongCommandNoTerminal) {
  for (const std::vector<std::string> &arguments :
       {std::vector<std::string>{hostileName + noUTF8},
        {"scan", file(".rtf").string()},
        {"scan", "--" + hostileName + noUTF8},
        {"check", (directory() / "no").string(), "--timeout", hostileName},
        {"open", "\\" + hostileName + noUTF8}}) {
    std::vector<std::string> command = arguments;
    command.insert(command.begin(), program("mellel"));
    const Result refused = run(command);
    EXPECT_NE(refused.status, 0);
    expectHarmless(refused.standardError);
    expectHarmless(refused.standardOutput);
  }
}

// What the plug-in and Cocoa log goes to the same terminal.
TEST_F(HostileNames, InTheLogCommandNoTerminal) {
  const Result refused = run({program("korvo"), "--library", example("library.bib").string(),
                              "--plugin", file(".bundle").string()});
  EXPECT_NE(refused.status, 0);
  expectHarmless(refused.standardError);
}

}  // namespace
