#include "Arguments.h"

#include <cstddef>

namespace appleevents {

std::optional<std::string> Arguments::value(std::string_view name) const {
  const auto found = values_.find(name);
  return found == values_.end() ? std::nullopt : std::optional(found->second);
}

std::expected<Arguments, std::string> Arguments::sort(const CommandSyntax &syntax,
                                                      std::span<const char *const> arguments) {
  Arguments sorted;
  bool optionsAreOver = false;
  for (std::size_t index = 0; index < arguments.size(); ++index) {
    const std::string_view argument = arguments[index];
    if (!optionsAreOver && !syntax.commandOption.empty() && argument == syntax.commandOption) {
      sorted.command_.emplace(arguments.begin() + static_cast<std::ptrdiff_t>(index) + 1,
                              arguments.end());
      if (sorted.command_->empty()) {
        return std::unexpected("behind " + std::string(argument) + " a command is missing");
      }
      return sorted;
    }
    if (optionsAreOver || argument == "-" || !argument.starts_with('-')) {
      sorted.words_.emplace_back(argument);
    } else if (argument == "--") {
      optionsAreOver = true;
    } else if (syntax.flags.contains(argument)) {
      sorted.flags_.emplace(argument);
    } else if (!syntax.values.contains(argument)) {
      return std::unexpected(std::string(syntax.name) + " knows no option \"" +
                             std::string(argument) + '"');
    } else if (index + 1 == arguments.size()) {
      return std::unexpected(std::string(argument) + " needs a value");
    } else if (!sorted.values_.emplace(argument, arguments[index + 1]).second) {
      return std::unexpected(std::string(argument) + " is given twice");
    } else {
      ++index;
    }
  }
  return sorted;
}

}  // namespace appleevents
