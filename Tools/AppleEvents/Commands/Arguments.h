// A command's arguments, sorted.
#pragma once

#include <expected>
#include <map>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace appleevents {

struct CommandSyntax {
  std::string_view name;
  std::set<std::string_view> flags = {};
  std::set<std::string_view> values = {};
  // The option behind which every argument belongs to another program; empty: there is none.
  std::string_view commandOption = {};
};

class Arguments {
 public:
  // The error is one line.
  static std::expected<Arguments, std::string> sort(const CommandSyntax &syntax,
                                                    std::span<const char *const> arguments);

  bool has(std::string_view flag) const { return flags_.contains(flag); }
  std::optional<std::string> value(std::string_view name) const;
  const std::vector<std::string> &words() const { return words_; }
  // Of the other program. Nothing where the option was not given.
  const std::optional<std::vector<std::string>> &command() const { return command_; }

 private:
  std::set<std::string, std::less<>> flags_;
  std::map<std::string, std::string, std::less<>> values_;
  std::vector<std::string> words_;
  std::optional<std::vector<std::string>> command_;
};

}  // namespace appleevents
