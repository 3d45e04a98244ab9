#include "Options.h"

#include <algorithm>
#include <charconv>
#include <map>
#include <set>
#include <utility>
#include <vector>

namespace mellel::commands {

namespace {

// A command's arguments, sorted into options with and without a value and the rest.
struct Arguments {
  std::set<std::string, std::less<>> flags;
  std::map<std::string, std::string, std::less<>> values;
  std::vector<std::string> words;

  bool has(std::string_view flag) const { return flags.contains(flag); }
  std::optional<std::string> value(std::string_view name) const {
    const auto found = values.find(name);
    return found == values.end() ? std::nullopt : std::optional(found->second);
  }
};

struct CommandSyntax {
  std::string_view name;
  std::set<std::string_view> flags;
  std::set<std::string_view> values;
  std::size_t wordCount = 0;
  std::string_view word;  // what the one word is, for errors
};

const std::vector<CommandSyntax> &commandSyntaxes() {
  static const std::vector<CommandSyntax> syntaxes = {
      {"scan",
       {"--no-bibliography", "--footnotes", "--strict", "--json", "--quiet"},
       {"--style", "-o", "--timeout"},
       1,
       "an RTF document"},
      {"live",
       {"--no-bibliography", "--footnotes", "--strict", "--json", "--quiet", "--watch"},
       {"--style", "-o", "--timeout"},
       1,
       "an RTF document"},
      {"check", {"--json", "--strict", "--quiet"}, {"--timeout"}, 1, "an RTF document"},
      {"insert", {"--quiet"}, {"--into", "--at", "-o", "--timeout"}, 0, ""},
      {"open", {"--quiet"}, {"--timeout"}, 1, "a citation"},
      {"handshake", {"--quiet"}, {"--timeout"}, 0, ""}};
  return syntaxes;
}

std::string inQuotes(std::string_view text) { return "\"" + std::string(text) + "\""; }

std::expected<Arguments, std::string> sortArguments(const CommandSyntax &syntax,
                                                    std::span<const char *const> arguments) {
  Arguments sorted;
  bool optionsAreOver = false;
  for (std::size_t index = 0; index < arguments.size(); ++index) {
    const std::string_view argument = arguments[index];
    if (optionsAreOver || argument == "-" || !argument.starts_with('-')) {
      sorted.words.emplace_back(argument);
      continue;
    }
    if (argument == "--") {
      optionsAreOver = true;
      continue;
    }
    const std::size_t equals = argument.starts_with("--") ? argument.find('=') : argument.npos;
    const std::string_view name = argument.substr(0, equals);
    if (syntax.flags.contains(name) && equals == argument.npos) {
      sorted.flags.emplace(name);
      continue;
    }
    if (!syntax.values.contains(name)) {
      return std::unexpected(std::string(syntax.name) + " knows no option " + inQuotes(argument));
    }
    if (sorted.values.contains(name)) {
      return std::unexpected(std::string(name) + " is given twice");
    }
    std::string_view value = equals == argument.npos ? "" : argument.substr(equals + 1);
    if (equals == argument.npos && index + 1 < arguments.size()) {
      value = arguments[++index];
    }
    if (value.empty()) {
      return std::unexpected(std::string(name) + " needs a value");
    }
    sorted.values.emplace(name, value);
  }
  return sorted;
}

std::expected<std::optional<std::chrono::seconds>, std::string> timeoutIn(
    const Arguments &arguments) {
  const std::optional<std::string> text = arguments.value("--timeout");
  if (!text) {
    return std::nullopt;
  }
  int seconds = 0;
  const auto [end, error] = std::from_chars(text->data(), text->data() + text->size(), seconds);
  if (error != std::errc() || end != text->data() + text->size() || seconds <= 0) {
    return std::unexpected("--timeout needs a number of seconds, not " + inQuotes(*text));
  }
  return std::chrono::seconds(seconds);
}

std::expected<Command, std::string> insertCommand(const Arguments &arguments) {
  const auto into = arguments.value("--into");
  const auto at = arguments.value("--at");
  const auto output = arguments.value("-o");
  if (!into && !at && !output) {
    return InsertOptions{};
  }
  if (!into || !at || !output) {
    return std::unexpected("insert needs --into, --at and -o together, or none of them");
  }
  return InsertOptions{InsertOptions::Place{*into, *at, *output}};
}

std::expected<Command, std::string> formatCommand(std::string_view name,
                                                  const Arguments &arguments) {
  FormatOptions options{.input = arguments.words[0],
                        .output = arguments.value("-o"),
                        .style = arguments.value("--style").value_or(""),
                        .wantsBibliography = !arguments.has("--no-bibliography"),
                        .isLive = name == "live",
                        .watches = arguments.has("--watch"),
                        .makesFootnotes = arguments.has("--footnotes"),
                        .isStrict = arguments.has("--strict"),
                        .asJSON = arguments.has("--json")};
  if (options.output == standardOutput && options.asJSON) {
    return std::unexpected("--json and -o - cannot both have standard output");
  }
  if (options.watches && (options.asJSON || options.isStrict || options.output == standardOutput)) {
    return std::unexpected("--watch goes on and on: it takes no --json, no --strict and no -o -");
  }
  return options;
}

std::expected<Command, std::string> makeCommand(const CommandSyntax &syntax,
                                                const Arguments &arguments) {
  if (arguments.words.size() > syntax.wordCount) {
    return std::unexpected(std::string(syntax.name) + " has no use for " +
                           inQuotes(arguments.words[syntax.wordCount]));
  }
  if (arguments.words.size() < syntax.wordCount || std::ranges::count(arguments.words, "") > 0) {
    return std::unexpected(std::string(syntax.name) + " needs " + std::string(syntax.word));
  }
  if (syntax.name == "scan" || syntax.name == "live") {
    return formatCommand(syntax.name, arguments);
  }
  if (syntax.name == "check") {
    return CheckOptions{arguments.words[0], arguments.has("--json"), arguments.has("--strict")};
  }
  if (syntax.name == "insert") {
    return insertCommand(arguments);
  }
  if (syntax.name == "open") {
    return OpenOptions{arguments.words[0]};
  }
  return HandshakeOptions{};
}

bool isHelp(std::string_view argument) { return argument == "--help" || argument == "-h"; }
bool isVersion(std::string_view argument) { return argument == "--version"; }

}  // namespace

std::expected<Options, std::string> parseOptions(std::span<const char *const> arguments) {
  const auto optionsEnd =
      std::ranges::find(arguments, "--", [](const char *text) { return std::string_view(text); });
  if (std::any_of(arguments.begin(), optionsEnd, isHelp)) {
    return Options{HelpOptions{}, std::nullopt};
  }
  if (std::any_of(arguments.begin(), optionsEnd, isVersion)) {
    return Options{VersionOptions{}, std::nullopt};
  }
  if (arguments.empty()) {
    return std::unexpected("a command is missing; mellel --help lists them");
  }
  const std::string_view name = arguments.front();
  const auto syntax = std::ranges::find(commandSyntaxes(), name, &CommandSyntax::name);
  if (syntax == commandSyntaxes().end()) {
    return std::unexpected("there is no command " + inQuotes(name) + "; mellel --help lists them");
  }
  const auto sorted = sortArguments(*syntax, arguments.subspan(1));
  if (!sorted) {
    return std::unexpected(sorted.error());
  }
  const auto timeout = timeoutIn(*sorted);
  if (!timeout) {
    return std::unexpected(timeout.error());
  }
  auto command = makeCommand(*syntax, *sorted);
  if (!command) {
    return std::unexpected(command.error());
  }
  return Options{std::move(*command), *timeout, sorted->has("--quiet")};
}

terminal::Words helpText() {
  return R"(mellel: formats the citations of RTF documents with the running reference manager.

  mellel scan IN.rtf [--style NAME] [--no-bibliography] [--footnotes] [-o OUT.rtf]
      Writes a copy with every citation {Smith 2001; Jones 1999} formatted, and the
      bibliography in place of the paragraph {bibliography} or at the end. NAME is a style's
      title or the name of its file. Without --style, or where the reference manager knows no
      such style, it asks in a dialog of its own. Without -o the copy is "IN formatted.rtf";
      -o - writes it to standard output, and what was done to standard error.
      --footnotes makes footnotes of citations in the running text, where the style is one
      for footnotes: where its citations are sentences.
  mellel live IN.rtf [--style NAME] [--no-bibliography] [--footnotes] [--watch] [-o OUT.rtf]
      The same in one request and without questions: an unknown style, or none, is the
      default one. With --watch again each time that IN.rtf is saved, until interrupted.
  mellel check IN.rtf
      Lists the citations as the reference manager reads them, and whether they are found.
      It shows its user what is not.
  mellel insert [--into IN.rtf --at TEXT -o OUT.rtf]
      Prints a citation of the references selected in the reference manager, or puts it into
      a copy of the document, after the first place where TEXT stands.
  mellel open CITATION
      Opens the cited reference in the reference manager.
  mellel handshake
      Prints the preferences that the reference manager answers with.
  mellel --version, mellel --help

Every command takes
  --timeout SECONDS   how long each answer may take: 600, and in a scan, where the reference
                      manager may ask its user, as long as it takes
  --quiet             prints neither progress nor what was done; what is wrong it does
and scan, live and check
  --json              prints what was done, or found, for programs to read
  --strict            ends with status 5 where a citation was not found or not formatted
IN.rtf is never changed.
Status: 0 done, 1 cancelled in the reference manager, 2 wrong usage, 3 no reference manager
running, 4 the document or an answer is broken, 5 done, but not every citation (--strict).
)";
}

}  // namespace mellel::commands
