// appleevents explain, the process itself.
#include "Payloads.h"

#include <Tests/Support/ChildProcess.h>
#include <Tests/Support/TemporaryDirectory.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

namespace {

using namespace appleevents_test;
using test_support::Result;
using test_support::TemporaryDirectory;
using testing::AllOf;
using testing::HasSubstr;

Result appleevents(std::vector<std::string> arguments) {
  arguments.insert(arguments.begin(), APPLE_EVENTS);
  return test_support::run(arguments);
}

TEST(ExplainCommand, EveryExampleOfThePageIsExplained) {
  const TemporaryDirectory directory;
  for (const auto &[name, text] : writtenExamples()) {
    const Result result = appleevents({"explain", directory.write(name, text).string()});
    EXPECT_EQ(result.status, 0) << name << ": " << result.standardError;
    EXPECT_THAT(result.standardOutput, HasSubstr("\nnothing is wrong\n")) << name;
  }
}

TEST(ExplainCommand, TheClassAndTheIDSayWhatTheBytesAre) {
  const TemporaryDirectory directory;
  const std::string file = directory.write("payload", examples().at("scan-reply")).string();
  const Result reply = appleevents({"explain", "mLeL", "LVBQ", "--reply", file});
  EXPECT_EQ(reply.status, 0) << reply.standardError;
  EXPECT_THAT(
      reply.standardOutput,
      AllOf(HasSubstr("'mLeL' 'LVBQ', reply to a live bibliography, from the host: 39 bytes"),
            HasSubstr("\n      22       7  text of group 1    \"{\\b 1}\": \"1\"\n")));
  const Result request = appleevents({"explain", "'mLeL'", "'LVBQ'", file});
  EXPECT_EQ(request.status, 1);
  EXPECT_THAT(request.standardOutput, HasSubstr("\nbroken: at byte "));
}

TEST(ExplainCommand, JSONHasEverything) {
  const TemporaryDirectory directory;
  const std::string file =
      directory.write("payload", examples().at("final-scan") + "\xFF").string();
  const Result result = appleevents({"explain", "mLeL", "SCNQ", "--json", file});
  EXPECT_EQ(result.status, 1) << result.standardError;
  const auto json = nlohmann::json::parse(result.standardOutput);
  EXPECT_EQ(json["class"], "mLeL");
  EXPECT_EQ(json["id"], "SCNQ");
  EXPECT_EQ(json["reply"], false);
  EXPECT_EQ(json["size"], 46);
  EXPECT_EQ(json["fields"][4]["name"], "style");
  EXPECT_EQ(json["fields"][4]["offset"], 10);
  EXPECT_EQ(json["fields"][4]["size"], 4);
  EXPECT_EQ(json["fields"][4]["value"], "APA");
  EXPECT_EQ(json["fields"][1]["value"], 7);
  EXPECT_EQ(json["fields"][10]["value"], "FF") << "no UTF-8";
  EXPECT_EQ(json["findings"][0]["severity"], "broken");
}

TEST(ExplainCommand, WhatAnotherWroteCannotCommandTheTerminal) {
  const TemporaryDirectory directory;
  const std::string file = directory.write("payload", "\x1B[2J\x7F\xE2\x80\xAE\0"s).string();
  const Result result = appleevents({"explain", "mLeL", "FNDN", file});
  EXPECT_EQ(result.standardOutput.find('\x1B'), std::string::npos);
  EXPECT_EQ(result.standardOutput.find("\xE2\x80\xAE"), std::string::npos);
}

TEST(ExplainCommand, WhatIsWrongIsOneLineAndAStatus) {
  const TemporaryDirectory directory;
  const std::string text = directory.write("text", "no bytes").string();
  const std::string bytes = directory.write("bytes", "\xFF\0\xFF"s).string();
  const std::map<std::vector<std::string>, std::pair<int, std::string>> expected = {
      {{}, {2, "a command is missing; appleevents --help lists them"}},
      {{"explode"}, {2, "there is no command \"explode\"; appleevents --help lists them"}},
      {{"explain"}, {2, "explain needs a file, or a class, an ID and a file"}},
      {{"explain", "--hex", "--bytes", "-"}, {2, "--hex and --bytes exclude each other"}},
      {{"explain", "--loud", "-"}, {2, "explain knows no option \"--loud\""}},
      {{"explain", "mLe", "SCNQ", text}, {2, "\"mLe\" is no code of four characters"}},
      {{"explain", "aevt", "oapp", bytes},
       {4, bytes + ": there is no event 'aevt' 'oapp' in this conversation"}},
      {{"explain", text}, {4, text + ": line 1: \"no\" is not hexadecimal"}},
      {{"explain", bytes},
       {4, bytes + ": these bytes are no event as it should be: say its class and ID"}},
      {{"explain", "/none"}, {4, "cannot read /none: No such file or directory"}},
      {{"explain", "/"}, {4, "cannot read /: Is a directory"}},
  };
  for (const auto &[arguments, outcome] : expected) {
    const Result result = appleevents(arguments);
    EXPECT_EQ(result.status, outcome.first) << outcome.second;
    EXPECT_EQ(result.standardError, "appleevents: " + outcome.second + "\n");
    EXPECT_EQ(result.standardOutput, "");
  }
}

TEST(ExplainCommand, HelpAndVersionAreToldOnStandardOutput) {
  EXPECT_THAT(appleevents({"--help"}).standardOutput, HasSubstr("appleevents explain"));
  EXPECT_EQ(appleevents({"--version"}).standardOutput, "appleevents " APPLE_EVENTS_VERSION "\n");
}

}  // namespace
