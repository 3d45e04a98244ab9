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

struct FormatOptions {
  std::string input;
  std::optional<std::string> output;
  std::string style;  // empty: the host asks, or takes its default
  bool wantsBibliography = true;
  // By the live bibliography request, not by the two requests of a scan.
  bool isLive = false;
  bool watches = false;
};

struct CheckOptions {
  std::string input;
  bool asJSON = false;
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

using Command = std::variant<FormatOptions, CheckOptions, InsertOptions, OpenOptions,
                             HandshakeOptions, HelpOptions>;

struct Options {
  Command command;
  // How long an answer may take; none: as long as it takes.
  std::optional<std::chrono::seconds> timeout;
};

// The arguments without the program's name. The error is one line.
std::expected<Options, std::string> parseOptions(std::span<const char *const> arguments);

// What --help prints.
terminal::Words helpText();

}  // namespace mellel::commands
