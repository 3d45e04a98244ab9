// The command line.
#pragma once

#include <StandIns/Terminal/TerminalText.h>

#include <chrono>
#include <expected>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>

namespace mellel::commands {

// In place of a file's name: standard output.
constexpr std::string_view standardOutput = "-";

struct FormatOptions {
  std::string input;
  std::optional<std::string> output;
  std::string style;  // empty: the host asks, or takes its default
  bool wantsBibliography = true;
  // By the live bibliography request, not by the two requests of a scan.
  bool isLive = false;
  bool watches = false;
  // Of citations in the running text, where the style's texts are sentences.
  bool makesFootnotes = false;
  // A citation that was not formatted has an exit status of its own.
  bool isStrict = false;
  bool asJSON = false;
};

struct CheckOptions {
  std::string input;
  bool asJSON = false;
  // A citation that finds nothing has an exit status of its own.
  bool isStrict = false;
};

struct InsertOptions {
  struct Place {
    std::string input;
    std::string text;
    std::string output;
  };
  // Without one the citation is printed.
  std::optional<Place> place;
};

struct OpenOptions {
  std::string citation;
};

struct HandshakeOptions {};

struct HelpOptions {};

struct VersionOptions {};

using Command = std::variant<FormatOptions, CheckOptions, InsertOptions, OpenOptions,
                             HandshakeOptions, HelpOptions, VersionOptions>;

struct Options {
  Command command;
  // How long an answer may take; none: as long as it takes.
  std::optional<std::chrono::seconds> timeout;
  // Nothing is told of progress, nor of what was done: only what is wrong.
  bool isQuiet = false;
};

// The arguments without the program's name. The error is one line.
std::expected<Options, std::string> parseOptions(std::span<const char *const> arguments);

// What --help prints.
terminal::Words helpText();

}  // namespace mellel::commands
