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

// GNUstep would end the host for each of these, in words of its own, before its main function.
TEST_F(HostileNames, ThatAreNotUTF8AreRefusedInALine) {
  for (const std::string &end :
       {noUTF8, std::string("\x80"), std::string("\xC1\xBF"), std::string("\xE2\x82"),
        std::string("\xE0\x9F\xBF"), std::string("\xED\xA0\x80"), std::string("\xF0\x8F\xBF\xBF"),
        std::string("\xF4\x90\x80\x80"), std::string("\xF5\x80\x80\x80")}) {
    for (const std::string &word : {"a" + end, end + ".bib", "\u20AC" + end}) {
      const Result refused = run({program("korvo"), "import", word});
      EXPECT_EQ(refused.status, 2);
      EXPECT_EQ(refused.standardError,
                "korvo: an argument is not UTF-8; give the file another name\n");
    }
  }
}

TEST_F(HostileNames, ThatAreUTF8AreTakenWhateverTheySay) {
  for (const std::string word : {"\u0080", "\u07FF", "\u0800", "\uD7FF", "\uE000", "\uFFFF",
                                 "\U00010000", "\U0010FFFF", "b\u00FCcher \U0001F4DA"}) {
    const Result refused = run({program("korvo"), "--library", word + ".bib"});
    EXPECT_THAT(refused.standardError, HasSubstr("cannot be read")) << word;
    EXPECT_NE(refused.status, 0);
  }
}

// What another program left behind there is no reason not to start.
TEST_F(HostileNames, OfVariablesThatAreNotUTF8KeepNobodyFromStarting) {
  const std::string left = "LEFT=" + noUTF8;
  const Result told = run({"/usr/bin/env", left, "BESIDE=\u00FC", program("korvo"), "--version"});
  EXPECT_EQ(told.status, 0) << told.standardError;
  EXPECT_THAT(told.standardOutput, HasSubstr("korvo "));
  EXPECT_EQ(told.standardError, "");
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
