#include "CommandLine.h"

#include <utility>

namespace korvo::application {
namespace {

// Reads arguments one after the other, options with their values.
class Arguments {
 public:
  explicit Arguments(std::span<const std::string_view> arguments) : rest_(arguments) {}

  bool isAtEnd() const { return rest_.empty(); }

  // The next argument; of "--option=value" the option, its value to be asked for.
  std::string_view next() {
    std::string_view argument = rest_.front();
    rest_ = rest_.subspan(1);
    value_.reset();
    if (const std::size_t equals = argument.find('=');
        argument.starts_with("--") && equals != std::string_view::npos) {
      value_ = argument.substr(equals + 1);
      argument = argument.substr(0, equals);
    }
    return argument;
  }

  // What belongs to the option read last; nothing when there is none or an empty one.
  std::optional<std::string_view> value() {
    if (!value_ && !rest_.empty()) {
      value_ = rest_.front();
      rest_ = rest_.subspan(1);
    }
    if (value_ && value_->empty()) {
      value_.reset();
    }
    return std::exchange(value_, std::nullopt);
  }

 private:
  std::span<const std::string_view> rest_;
  std::optional<std::string_view> value_;
};

std::unexpected<std::string> missingValue(std::string_view option) {
  return std::unexpected(std::string(option) + " needs a value (see --help)");
}

std::unexpected<std::string> unknown(std::string_view argument) {
  return std::unexpected("unknown argument " + std::string(argument) + " (see --help)");
}

void appendTags(std::vector<std::string> &tags, std::string_view list) {
  while (!list.empty()) {
    const std::size_t comma = list.find(',');
    if (comma != 0) {
      tags.emplace_back(list.substr(0, comma));
    }
    list = comma == std::string_view::npos ? std::string_view() : list.substr(comma + 1);
  }
}

std::expected<Command, std::string> parseImport(Arguments arguments) {
  ImportFiles import;
  while (!arguments.isAtEnd()) {
    const std::string_view argument = arguments.next();
    if (argument == "--into") {
      const auto value = arguments.value();
      if (!value) {
        return missingValue(argument);
      }
      import.database = *value;
    } else if (argument == "--help") {
      return ShowHelp{};
    } else if (argument.starts_with('-')) {
      return unknown(argument);
    } else {
      import.files.emplace_back(argument);
    }
  }
  if (import.files.empty()) {
    return std::unexpected("import needs a file to import (see --help)");
  }
  if (import.database.empty()) {
    return std::unexpected("import needs --into LIBRARY (see --help)");
  }
  return import;
}

// Whether the option is one of those with a value; takes the value in.
bool takeOption(RunHost &run, std::string_view option, std::string_view value) {
  if (option == "--library") {
    run.libraries.emplace_back(value);
  } else if (option == "--plug-in") {
    run.plugIn = value;
  } else if (option == "--favorite") {
    run.favorites.emplace_back(value);
  } else if (option == "--default-style") {
    run.defaultStyle = value;
  } else if (option == "--select") {
    appendTags(run.selectedTags, value);
  } else {
    return false;
  }
  return true;
}

bool isKnown(std::string_view option) {
  RunHost ignored;
  return takeOption(ignored, option, {});
}

}  // namespace

std::expected<Command, std::string> parseCommandLine(std::span<const std::string_view> words) {
  if (!words.empty() && words.front() == "import") {
    return parseImport(Arguments(words.subspan(1)));
  }
  RunHost run;
  Arguments arguments(words);
  while (!arguments.isAtEnd()) {
    const std::string_view argument = arguments.next();
    if (argument == "--help" || argument == "-h") {
      return ShowHelp{};
    }
    if (argument == "--version") {
      return ShowVersion{};
    }
    if (!isKnown(argument)) {
      return unknown(argument);
    }
    const auto value = arguments.value();
    if (!value) {
      return missingValue(argument);
    }
    takeOption(run, argument, *value);
  }
  if (run.libraries.empty()) {
    return std::unexpected("--library FILE is missing (see --help)");
  }
  return run;
}

terminal::Words helpText() {
  return R"(Usage: korvo --library FILE [option]...
       korvo import FILE... --into LIBRARY

Shows libraries of references and serves the word processor through its plug-in.

  --library FILE         a library: another program's (.bib, .bibtex, .biblatex, .ris or
                         .json, imported for this run) or korvo's own, made by "korvo
                         import"; repeatable, the first is the current one
  --plug-in BUNDLE       the plug-in to load, in place of the one that came with korvo
  --favorite STYLE       a style for the dialog's menu, by title or file name ("apa");
                         repeatable; without it the remembered favorites
  --default-style STYLE  the style where no other is named
  --select TAG[,TAG]...  select references by identifier or author and year
  --version              prints the version
  --help                 this text

  import                 puts the references of other programs' files into LIBRARY,
                         which is made if need be

Prints a line for what the user would see:
  ready                  the plug-in is started
  notice: HEADER         a notice; its text follows, each line after a blank
  editor: TAG            the editor of a reference was opened
  dialog: open           a dialog waits for an answer
  dialog: closed CODE    the code that ended it; the scan dialog's: 2 formats the
                         document, 0 cancels
  front                  another program brought korvo to the front

Exit status: 0 ended by a signal or by the user, 1 a library, the display, the message
bus or the plug-in is not to be had, 2 an argument is wrong.
)";
}

}  // namespace korvo::application
