// The command line.
#pragma once

#include <Formats/FourCharacterCode.h>
#include <StandIns/Terminal/TerminalText.h>
#include <Tools/AppleEvents/Payloads/EventInput.h>

#include <chrono>
#include <cstddef>
#include <expected>
#include <optional>
#include <span>
#include <string>
#include <variant>
#include <vector>

namespace appleevents {

struct ExplainOptions {
  std::string input;
  // Both or none.
  std::optional<formats::FourCharacterCode> eventClass = std::nullopt;
  std::optional<formats::FourCharacterCode> eventID = std::nullopt;
  bool isReply = false;
  InputForm form = InputForm::asFound;
  bool asJSON = false;
};

struct RecordOptions {
  std::string output;
  bool isAnonymous = false;
  bool hasTimes = true;
  // Recorded until it ends; without one, until a signal comes.
  std::optional<std::vector<std::string>> command = std::nullopt;
};

struct ShowOptions {
  std::string input;
  // Of the one event that is explained in full.
  std::optional<std::size_t> event = std::nullopt;
  bool asHTML = false;
};

struct ReplayOptions {
  std::string input;
  // How long the host may take to start, and for an answer.
  std::chrono::seconds timeout{60};
  // The host that is started for it; without one, there has to be one.
  std::optional<std::vector<std::string>> host = std::nullopt;
};

struct HelpOptions {};

struct VersionOptions {};

using Command = std::variant<ExplainOptions, RecordOptions, ShowOptions, ReplayOptions, HelpOptions,
                             VersionOptions>;

// The arguments without the program's name. The error is one line.
std::expected<Command, std::string> parseOptions(std::span<const char *const> arguments);

// What --help prints.
terminal::Words helpText();

}  // namespace appleevents
