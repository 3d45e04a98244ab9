// What the user asked for on the command line.
#pragma once

#include <StandIns/Terminal/TerminalText.h>

#include <expected>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace korvo::application {

struct ShowHelp {
  bool operator==(const ShowHelp &) const = default;
};

struct ShowVersion {
  bool operator==(const ShowVersion &) const = default;
};

struct RunHost {
  std::vector<std::filesystem::path> libraries;  // at least one; the first is the current one
  std::optional<std::filesystem::path> plugIn;
  std::vector<std::string> favorites;  // titles or base names; empty: as remembered
  std::optional<std::string> defaultStyle;
  std::vector<std::string> selectedTags;

  bool operator==(const RunHost &) const = default;
};

struct ImportFiles {
  std::vector<std::filesystem::path> files;  // at least one
  std::filesystem::path database;

  bool operator==(const ImportFiles &) const = default;
};

using Command = std::variant<ShowHelp, ShowVersion, RunHost, ImportFiles>;

// The arguments without the program's name. The error is one line.
std::expected<Command, std::string> parseCommandLine(std::span<const std::string_view> arguments);

terminal::Words helpText();

}  // namespace korvo::application
