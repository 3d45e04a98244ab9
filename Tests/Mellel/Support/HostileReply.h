// The commands under attack by what the host answers, and what is right of each run: the copy is
// what the bytes say or is not made, the document and an older copy stay as they were.
#pragma once

#include "ProcessWithoutBus.h"
#include "ReplyRules.h"
#include "ScriptedHost.h"

#include <StandIns/Mellel/Commands/Commands.h>
#include <Tests/Support/TemporaryDirectory.h>

#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

namespace mellel_test {

using mellel::commands::CheckOptions;
using mellel::commands::Command;
using mellel::commands::FormatOptions;
using mellel::commands::HandshakeOptions;
using mellel::commands::InsertOptions;

namespace fs = std::filesystem;
namespace request = formats::request;
namespace answer = formats::answer;
using formats::FourCharacterCode;

inline const std::string oldCopy = "{\\rtf1 the copy of yesterday}";

inline Draft makeDraft() {
  Draft draft;
  draft.citations = {"Smith 2001", "Nobody", "!S"};
  draft.pieces = {"{\\rtf1\\ansi\\ansicpg1252\\deff0{\\fonttbl{\\f0 Times;}}\n\\pard First ",
                  " then \\u233?", " and", " last.\\par\n", "\nEnd.\\par\n}\n"};
  draft.rtf = draft.pieces[0];
  for (std::size_t index = 0; index < draft.citations.size(); ++index) {
    draft.rtf += "\\{" + draft.citations[index] + "\\}" + draft.pieces[index + 1];
  }
  draft.rtf += "\\{bibliography\\}\\par" + draft.pieces.back();
  return draft;
}

inline std::string fileBytes(const fs::path &path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

// What the standard output gets for as long as it lives. In memory: thousands of runs have one
// each.
class Output {
 public:
  Output() : memory_(open_memstream(&text_, &size_)), before_(std::exchange(stdout, memory_)) {}
  ~Output() {
    stdout = before_;
    std::fclose(memory_);
    std::free(text_);
  }
  Output(const Output &) = delete;
  Output &operator=(const Output &) = delete;

  std::string text() const {
    std::fflush(memory_);
    return {text_, size_};
  }

 private:
  char *text_ = nullptr;
  std::size_t size_ = 0;
  std::FILE *memory_;
  std::FILE *before_;
};

// What was seen of a run.
struct Ran {
  int status = 0;
  std::string line;
  std::string output;
  std::string copy;

  bool operator==(const Ran &) const = default;
};

// A command whose answer is under attack.
struct Attacked {
  std::string name;
  Command command;
  FourCharacterCode request = 0;
  // What is wrong with a run after an answer with this payload; empty if nothing is.
  std::function<std::string(const std::string &payload, std::uint32_t documentID, const Ran &)>
      fault;
};

// In memory where there is such a place: every copy is forced to its disk.
inline fs::path quickDirectory() {
  const fs::path memory = "/dev/shm";
  return access(memory.c_str(), W_OK) == 0 ? memory : fs::temp_directory_path();
}

class HostileReply : public ::testing::Test {
 protected:
  HostileReply() { folder_.write("in.rtf", draft_.rtf); }
  ~HostileReply() override { std::cout << "[ runs     ] " << runs_ << '\n'; }

  std::string input() const { return folder_ / "in.rtf"; }
  std::string output() const { return folder_ / "out.rtf"; }

  Command formatting(bool isLive) const {
    // No style is asked for, so that none is missed.
    return FormatOptions{.input = input(), .output = output(), .style = "", .isLive = isLive};
  }
  Command insertion() const { return InsertOptions{{{input(), "{Nobody}", output()}}}; }
  Command check() const { return CheckOptions{input(), true}; }

  // An older copy is there. No run may take longer than it was given, or change the document, or
  // leave anything else behind.
  Ran run(const Command &command, std::optional<std::chrono::seconds> timeout = {}) {
    ++runs_;
    std::ofstream(output(), std::ios::binary) << oldCopy;
    const auto begin = std::chrono::steady_clock::now();
    Ran ran;
    {
      const Output captured;
      const auto done = mellel::commands::run({command, timeout});
      ran.output = captured.text();
      if (!done) {
        ran.status = static_cast<int>(done.error().status);
        ran.line = done.error().line;
      }
    }
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(20));
    ran.copy = fileBytes(output());
    EXPECT_EQ(fileBytes(input()), draft_.rtf) << "the document itself was changed";
    EXPECT_EQ(folder_.fileCount(), 2U) << "something was left behind";
    EXPECT_FALSE(isReceiving());
    return ran;
  }

  static std::string faultOfRefusal(const Ran &ran) {
    if (ran.status != 4 || !ran.line.starts_with("Korvo's answer is broken: ")) {
      return "it is not refused, but " + std::to_string(ran.status) + ": " + ran.line;
    }
    if (withoutControls(ran.line) != ran.line || ran.copy != oldCopy || !ran.output.empty()) {
      return "the refusal is untidy";
    }
    return "";
  }

  std::string faultOfCopy(const SlowText &expected, const std::string &report,
                          const Ran &ran) const {
    if (ran.status != 0) {
      return "it is refused: " + ran.line;
    }
    const auto shown = slowText(ran.copy);
    if (!shown || !showTheSame(*shown, expected)) {
      return "the copy is wrong: " + ran.copy + "\nexpected: " + plainText(expected);
    }
    std::size_t position = 0;
    for (const std::string &piece : draft_.pieces) {
      const std::size_t found = ran.copy.find(piece, position);
      if (found == std::string::npos || (position == 0 && found != 0)) {
        return "the copy lacks bytes of the document: " + ran.copy;
      }
      position = found + piece.size();
    }
    const std::string told = "wrote: " + output() + '\n' + report;
    return ran.output == told ? "" : "it tells " + ran.output + "expected: " + told;
  }

  std::string faultOfFormatting(const std::string &payload, std::uint32_t documentID,
                                const Ran &ran) const {
    const auto copy = copyFromScanReply(draft_, documentID, payload);
    return copy ? faultOfCopy(copy->text, copy->report, ran) : faultOfRefusal(ran);
  }

  // A scan reads no more of it than whether it is whole.
  std::string faultOfFirstStep(const std::string &payload, std::uint32_t documentID,
                               const Ran &ran) const {
    const auto found = lookedUpIn(draft_.citations.size(), documentID, payload);
    return found ? faultOfFormatting(goodScanReply(documentID), documentID, ran)
                 : faultOfRefusal(ran);
  }

  std::string faultOfCheck(const std::string &payload, std::uint32_t documentID,
                           const Ran &ran) const {
    const auto found = lookedUpIn(draft_.citations.size(), documentID, payload);
    if (!found) {
      return faultOfRefusal(ran);
    }
    std::string told;
    for (const LookedUp &entry : *found) {
      told += (told.empty() ? "[\n  {\"citation\": " : ",\n  {\"citation\": ") +
              inJSON(entry.citation) + ", \"found\": " +
              // The live bibliography that is asked for next is answered well.
              (&entry == &(*found)[1] ? "false" : "true") + ", \"records\": [";
      for (const std::string &record : entry.records) {
        told += (&record == &entry.records.front() ? "" : ", ") + inJSON(record);
      }
      told += "]}";
    }
    told += "\n]\n";
    return ran.status == 0 && ran.output == told && ran.copy == oldCopy ? ""
                                                                        : "it tells " + ran.output;
  }

  std::string faultOfInsertion(const std::string &payload, const Ran &ran) const {
    auto citation = citationIn(payload);
    if (!citation) {
      return faultOfRefusal(ran);
    }
    if (!citation->starts_with('{') || !citation->ends_with('}')) {
      *citation = '{' + *citation + '}';
    }
    return faultOfCopy(withInsertion(draft_, "{Nobody}", *citation),
                       "inserted: " + withoutControls(*citation) + '\n', ran);
  }

  static std::string faultOfPrinting(const std::string &payload, const Ran &ran) {
    const auto citation = citationIn(payload);
    if (!citation) {
      return faultOfRefusal(ran);
    }
    const bool isRight =
        ran.status == 0 && ran.copy == oldCopy && ran.output == withoutControls(*citation) + '\n';
    return isRight ? "" : "it tells " + ran.output;
  }

  static std::string faultOfHandshake(const std::string &payload, const Ran &ran) {
    if (payload.size() != 14) {
      return faultOfRefusal(ran);
    }
    std::string told = "preferences:";
    for (std::size_t index = 0; index < payload.size(); index += 2) {
      told += ' ' + std::to_string(static_cast<unsigned char>(payload[index]) * 256 +
                                   static_cast<unsigned char>(payload[index + 1]));
    }
    return ran.status == 0 && ran.output == told + '\n' ? "" : "it tells " + ran.output;
  }

  // Every command, and in a scan each of its two steps.
  std::vector<Attacked> attacked() const {
    const auto without = [](auto function) {
      return [function](const std::string &payload, std::uint32_t, const Ran &ran) {
        return function(payload, ran);
      };
    };
    return {
        {"the first answer of a scan", formatting(false), request::preliminaryScan,
         std::bind_front(&HostileReply::faultOfFirstStep, this)},
        {"the second answer of a scan", formatting(false), request::finalScan,
         std::bind_front(&HostileReply::faultOfFormatting, this)},
        {"the reply to a live bibliography", formatting(true), request::liveBibliography,
         std::bind_front(&HostileReply::faultOfFormatting, this)},
        {"the answer to a check", check(), request::preliminaryScan,
         std::bind_front(&HostileReply::faultOfCheck, this)},
        {"the citation to insert", insertion(), request::insertCitation,
         without(std::bind_front(&HostileReply::faultOfInsertion, this))},
        {"the citation to print", InsertOptions{}, request::insertCitation,
         without(&HostileReply::faultOfPrinting)},
        {"the preferences", HandshakeOptions{}, request::handshake,
         without(&HostileReply::faultOfHandshake)},
    };
  }

  // What is done to a good answer.
  using Damage = std::function<void(Answer &)>;

  // The damaged answer comes, and where it says that it is for another document the good one after
  // it.
  void expectRight(const Attacked &target, const Damage &damage, const std::string &what) {
    Answer sent;
    std::uint32_t sentFor = 0;
    host_.answer(target.request, [&](const Answer &good, std::uint32_t documentID) {
      sent = good;
      sentFor = documentID;
      damage(sent);
      std::vector<Answer> answers = {sent};
      if (documentID != 0 && isForAnother(sent.payload.value_or(""), documentID)) {
        answers.push_back(good);
        sent = good;
      }
      return answers;
    });
    const Ran ran = run(target.command);
    const std::string fault = target.fault(sent.payload.value_or(""), sentFor, ran);
    if (!fault.empty()) {
      ADD_FAILURE() << target.name << ", " << what << ": " << fault;
    }
    host_.answerWell();
  }

  // The same command, and a host that answers well.

  void expectGoodRun(const Attacked &target) {
    std::uint32_t documentID = 0;
    std::string payload;
    host_.answer(target.request, [&](const Answer &good, std::uint32_t sentFor) {
      documentID = sentFor;
      payload = *good.payload;
      return std::vector<Answer>{good};
    });
    const Ran ran = run(target.command);
    ASSERT_EQ(target.fault(payload, documentID, ran), "") << target.name << ", answered well";
    ASSERT_EQ(ran.status, 0);
    host_.answerWell();
  }

  static std::size_t sizeOfGood(const Attacked &target) {
    switch (target.request) {
      case request::preliminaryScan:
        return goodResolution(1).size();
      case request::insertCitation:
        return goodCitation().size();
      case request::handshake:
        return goodPreferences().size();
      default:
        return goodScanReply(1).size();
    }
  }

  const Draft draft_ = makeDraft();
  ScriptedHost host_;
  test_support::TemporaryDirectory folder_{quickDirectory()};
  std::size_t runs_ = 0;
};

}  // namespace mellel_test
