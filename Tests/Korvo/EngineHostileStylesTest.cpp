// Styles as nobody publishes them: broken, endless, nested without measure, gone. Each is an error
// of one line, in a time that nobody minds, and the next style works.
#include "EngineDocument.h"

#include <StandIns/Korvo/Engine/StyleCatalog.h>
#include <Tests/Support/ProcessorTime.h>
#include <Tests/Support/TemporaryDirectory.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>

using namespace korvo_test;
using korvo::engine::StyleCatalog;
using testing::HasSubstr;
using testing::Not;

namespace {

const std::string head =
    "<style xmlns=\"http://purl.org/net/xbiblio/csl\" class=\"in-text\" version=\"1.0\">"
    "<info><title>Hostile</title><id>hostile</id></info>";
const std::string layout =
    "<citation><layout><text macro=\"a\"/></layout></citation>"
    "<bibliography><layout><text macro=\"a\"/></layout></bibliography></style>";

std::string repeated(const std::string &text, int times) {
  std::string result;
  for (int time = 0; time < times; ++time) {
    result += text;
  }
  return result;
}

class EngineHostileStyles : public testing::Test {
 protected:
  EngineHostileStyles() { std::filesystem::create_directories(styles() / "dependent"); }

  std::filesystem::path styles() const { return directory_ / "styles"; }
  StyleCatalog catalog() const { return {styles(), directory_ / "index"}; }
  std::filesystem::path write(const std::string &name, const std::string &text) {
    const std::filesystem::path file = styles() / name;
    std::ofstream(file, std::ios::binary) << text;
    return file;
  }

  // What comes of a document in the style of that text: its only group, or the error.
  std::string outcome(const std::string &text) {
    write("hostile.csl", text);
    const auto start = test_support::processorTime();
    StyleCatalog styles = catalog();
    const auto style = styles.find("hostile");
    std::string said = style ? "" : style.error();
    if (style) {
      const std::vector<CiteGroup> groups = {{cite("smith2001")}};
      const auto document = processor().formatDocument(*style, lookUpIn(library()), groups, true);
      said = document ? markup(document->group(0)) : document.error();
    }
    const double time = (test_support::processorTime() - start).count();
    EXPECT_LT(time, 5) << said;
    EXPECT_THAT(said, Not(HasSubstr("\n")));
    EXPECT_LT(said.size(), 2000U);
    std::printf("figure: %.2f s: %s\n", time, said.substr(0, 150).c_str());
    EXPECT_EQ(printOne("apa", {cite("smith2001")}), "(Smith, 2001)");
    return said;
  }

  test_support::TemporaryDirectory directory_;
};

TEST_F(EngineHostileStyles, AMacroThatCallsItselfIsAnError) {
  EXPECT_THAT(outcome(head + "<macro name=\"a\"><text macro=\"a\"/></macro>" + layout),
              HasSubstr("Hostile"));
  EXPECT_THAT(outcome(head +
                      "<macro name=\"a\"><text macro=\"b\"/></macro>"
                      "<macro name=\"b\"><group><text macro=\"a\"/></group></macro>" +
                      layout),
              HasSubstr("Hostile"));
}

// Thirty macros, each printing the next one twice: a thousand million texts.
std::string doublingMacros() {
  std::string macros;
  for (int level = 0; level < 30; ++level) {
    const std::string next =
        level < 29 ? "<text macro=\"m" + std::to_string(level + 1) + "\"/>" : "<text value=\"x\"/>";
    const std::string name = level == 0 ? "a" : "m" + std::to_string(level);
    macros += "<macro name=\"" + name + "\">" + next + next + "</macro>";
  }
  return macros;
}

TEST_F(EngineHostileStyles, MacrosThatDoubleWithoutEndAreGivenUpInTime) {
  processor().setLimits({.document = {.time = std::chrono::seconds(1), .bytes = SIZE_MAX / 2}});
  EXPECT_EQ(outcome(head + doublingMacros() + layout),
            "style \"Hostile\": it takes more than 1 s of work");
  processor().setLimits({});
}

TEST_F(EngineHostileStyles, MacrosThatDoubleWithoutEndAreGivenUpBeforeTheyFillTheMemory) {
  processor().setLimits({.document = {.time = std::chrono::hours(1), .bytes = 300U << 20U}});
  EXPECT_EQ(outcome(head + doublingMacros() + layout),
            "style \"Hostile\": it takes more than 300 MiB of memory");
  processor().setLimits({});
}

TEST_F(EngineHostileStyles, EntitiesThatMultiplyAreNotExpanded) {
  std::string entities = "<!ENTITY e0 \"aaaaaaaaaa\">";
  for (int level = 1; level < 12; ++level) {
    entities += "<!ENTITY e" + std::to_string(level) + " \"" +
                repeated("&e" + std::to_string(level - 1) + ";", 10) + "\">";
  }
  const std::string document = "<?xml version=\"1.0\"?><!DOCTYPE style [" + entities + "]>";
  outcome(document + "<style class=\"in-text\"><info><title>&e11;</title></info>" + layout);
  outcome(document + head + "<macro name=\"a\"><text value=\"&e11;\"/></macro>" + layout);
}

TEST_F(EngineHostileStyles, EntitiesOfFilesAreNotRead) {
  write("secret.txt", "the secret");
  const std::string document =
      "<?xml version=\"1.0\"?><!DOCTYPE style [<!ENTITY e SYSTEM \"secret.txt\">]>";
  EXPECT_THAT(
      outcome(document + head + "<macro name=\"a\"><text value=\"x&e;\"/></macro>" + layout),
      Not(HasSubstr("the secret")));
  EXPECT_THAT(outcome(document + "<style><info><title>T&e;</title></info>" + layout),
              Not(HasSubstr("the secret")));
}

TEST_F(EngineHostileStyles, NestingWithoutMeasureIsAnErrorOrNothing) {
  constexpr int depth = 50'000;
  outcome(head + "<macro name=\"a\">" + repeated("<group>", depth) + "<text value=\"x\"/>" +
          repeated("</group>", depth) + "</macro>" + layout);
}

TEST_F(EngineHostileStyles, WhatIsNoXMLIsAnErrorThatNamesTheFile) {
  for (const std::string &text :
       {std::string(), std::string("no style"), std::string(100, '\0'), std::string("\xFF\xFE<"),
        std::string("<style>"), "{\"style\":1}" + std::string(1000, '}')}) {
    EXPECT_THAT(outcome(text), HasSubstr("hostile.csl"));
  }
}

TEST_F(EngineHostileStyles, WhatIsNoFileIsNoStyle) {
  ASSERT_EQ(mkfifo((styles() / "pipe.csl").c_str(), 0600), 0);
  std::filesystem::create_directory(styles() / "folder.csl");
  std::filesystem::create_symlink("/dev/zero", styles() / "zero.csl");
  for (const char *name : {"pipe", "folder", "zero"}) {
    const auto found = catalog().find(name);
    ASSERT_FALSE(found);
    EXPECT_EQ(found.error(), std::string("no citation style named \"") + name + "\" is installed");
  }
}

TEST_F(EngineHostileStyles, OneThatFollowsItselfIsAnError) {
  const std::string link =
      "<style class=\"in-text\"><info><title>Loop</title>"
      "<link rel=\"independent-parent\" href=\"http://x/loop\"/></info></style>";
  write("loop.csl", link);
  StyleCatalog styles = catalog();
  const auto style = styles.find("loop");
  if (style) {
    const std::vector<CiteGroup> groups = {{cite("smith2001")}};
    const auto document = processor().formatDocument(*style, lookUpIn(library()), groups, true);
    ASSERT_FALSE(document);
    EXPECT_THAT(document.error(), HasSubstr("Loop"));
    EXPECT_THAT(document.error(), Not(HasSubstr("\n")));
  }
}

TEST_F(EngineHostileStyles, OneThatIsRemovedWhileTheHostRunsIsAnErrorThatNamesIt) {
  const auto file =
      write("hostile.csl", head + "<macro name=\"a\"><text value=\"x\"/></macro>" + layout);
  StyleCatalog styles = catalog();
  ASSERT_TRUE(styles.find("Hostile")) << "by its title, so that all are listed";
  const auto style = styles.find("hostile");
  ASSERT_TRUE(style);
  std::filesystem::remove(file);
  const std::vector<CiteGroup> groups = {{cite("smith2001")}};
  const auto document = processor().formatDocument(*style, lookUpIn(library()), groups, true);
  ASSERT_FALSE(document);
  EXPECT_THAT(document.error(), HasSubstr("hostile.csl: cannot be read"));
  const auto gone = styles.find("Hostile");
  ASSERT_FALSE(gone);
  EXPECT_EQ(gone.error(), "the citation style \"Hostile\" is not installed any more");
}

}  // namespace
