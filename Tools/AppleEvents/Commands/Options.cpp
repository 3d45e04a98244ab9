#include "Options.h"

#include "Arguments.h"

#include <Tools/AppleEvents/Payloads/EventKinds.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <string_view>
#include <utility>

namespace appleevents {

namespace {

using Parsed = std::expected<Command, std::string>;

std::string inQuotationMarks(std::string_view text) { return '"' + std::string(text) + '"'; }

Parsed explainCommand(const Arguments &arguments) {
  constexpr std::size_t withCodes = 3;
  const auto &words = arguments.words();
  if (words.size() != 1 && words.size() != withCodes) {
    return std::unexpected("explain needs a file, or a class, an ID and a file");
  }
  ExplainOptions options{.input = words.back(),
                         .isReply = arguments.has("--reply"),
                         .asJSON = arguments.has("--json")};
  if (arguments.has("--hex") && arguments.has("--bytes")) {
    return std::unexpected("--hex and --bytes exclude each other");
  }
  if (arguments.has("--hex")) {
    options.form = InputForm::hexadecimal;
  } else if (arguments.has("--bytes")) {
    options.form = InputForm::bytes;
  }
  if (words.size() == withCodes) {
    options.eventClass = readCode(words[0]);
    options.eventID = readCode(words[1]);
    if (!options.eventClass || !options.eventID) {
      return std::unexpected(inQuotationMarks(options.eventClass ? words[1] : words[0]) +
                             " is no code of four characters");
    }
  }
  return options;
}

Parsed recordCommand(const Arguments &arguments) {
  const auto output = arguments.value("-o");
  if (!arguments.words().empty()) {
    return std::unexpected("record has no use for " + inQuotationMarks(arguments.words().front()) +
                           "; a command stands behind --");
  }
  if (!output || output->empty()) {
    return std::unexpected("record needs -o and a file");
  }
  return RecordOptions{.output = *output,
                       .isAnonymous = arguments.has("--anonymous"),
                       .hasTimes = !arguments.has("--no-times"),
                       .command = arguments.command()};
}

std::optional<std::size_t> numberIn(std::string_view text) {
  std::size_t number = 0;
  const char *const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  return error == std::errc() && stop == end && number > 0 ? std::optional(number) : std::nullopt;
}

Parsed showCommand(const Arguments &arguments) {
  if (arguments.words().size() != 1) {
    return std::unexpected("show needs a recording");
  }
  ShowOptions options{.input = arguments.words().front(), .asHTML = arguments.has("--html")};
  if (options.asHTML && arguments.value("--event")) {
    return std::unexpected("--event and --html exclude each other");
  }
  if (const auto event = arguments.value("--event")) {
    options.event = numberIn(*event);
    if (!options.event) {
      return std::unexpected("--event needs the number of an event, not " +
                             inQuotationMarks(*event));
    }
  }
  return options;
}

Parsed replayCommand(const Arguments &arguments) {
  if (arguments.words().size() != 1) {
    return std::unexpected("replay needs a recording");
  }
  ReplayOptions options{.input = arguments.words().front(), .host = arguments.command()};
  if (const auto timeout = arguments.value("--timeout")) {
    constexpr std::size_t longest = 86400;
    const auto seconds = numberIn(*timeout);
    if (!seconds || *seconds > longest) {
      return std::unexpected("--timeout needs a number of seconds, not " +
                             inQuotationMarks(*timeout));
    }
    options.timeout = std::chrono::seconds(*seconds);
  }
  return options;
}

struct Entry {
  CommandSyntax syntax;
  Parsed (*make)(const Arguments &);
};

const std::array<Entry, 4> &entries() {
  static const std::array<Entry, 4> all = {
      {{{.name = "explain", .flags = {"--reply", "--hex", "--bytes", "--json"}}, explainCommand},
       {{.name = "record",
         .flags = {"--anonymous", "--no-times"},
         .values = {"-o"},
         .commandOption = "--"},
        recordCommand},
       {{.name = "show", .flags = {"--html"}, .values = {"--event"}}, showCommand},
       {{.name = "replay", .values = {"--timeout"}, .commandOption = "--against"}, replayCommand}}};
  return all;
}

}  // namespace

Parsed parseOptions(std::span<const char *const> arguments) {
  if (arguments.empty()) {
    return std::unexpected("a command is missing; appleevents --help lists them");
  }
  const std::string_view name = arguments.front();
  const bool asksForHelp = name == "--help" || name == "-h" ||
                           (arguments.size() > 1 && std::string_view(arguments[1]) == "--help");
  if (asksForHelp) {
    return HelpOptions{};
  }
  if (name == "--version") {
    return VersionOptions{};
  }
  const auto entry =
      std::ranges::find(entries(), name, [](const Entry &each) { return each.syntax.name; });
  if (entry == entries().end()) {
    return std::unexpected("there is no command " + inQuotationMarks(name) +
                           "; appleevents --help lists them");
  }
  const auto sorted = Arguments::sort(entry->syntax, arguments.subspan(1));
  if (!sorted) {
    return std::unexpected(sorted.error());
  }
  return entry->make(*sorted);
}

terminal::Words helpText() {
  return R"(appleevents: looks at what a word processor and its reference manager say to each other.

  appleevents explain [CLASS ID] [--reply] [--hex | --bytes] [--json] FILE
      Says field by field what the data of an event means, and what about it breaks a rule.
      FILE has the bytes, or a hex dump of them, or the log of a program on macOS that ran with
      AEDebugSends=1 or AEDebugReceives=1; - is standard input. CLASS and ID are those of the
      event, mLeL SCNQ; without them they are taken from the log, or guessed. --reply: the data
      is that of the event's reply. --hex and --bytes say what FILE has, where it looks
      otherwise. --json prints one line for each event, for programs to read.
  appleevents record -o FILE [--anonymous] [--no-times] [-- COMMAND...]
      Writes down every event on the session bus, with its reply, until COMMAND ends or, without
      one, until interrupted. --anonymous replaces the words that authors wrote by others of the
      same length, so that the recording can be sent to strangers. --no-times leaves the times
      out, so that two recordings of the same conversation are the same.
  appleevents show [--event N | --html] FILE
      Shows a recording: who said what, when, how long the answer took, how large it was, and
      what it came to. --event explains one event in full, with its reply; --html makes a page
      for a browser.
  appleevents replay FILE [--timeout SECONDS] [--against COMMAND...]
      Sends the requests of a recording to the running host, or to the one that COMMAND starts,
      and compares each answer, field by field, with the recorded one. Document IDs may differ.
      Each answer may take 60 seconds, or as long as --timeout says.
  appleevents --version, appleevents --help

Status: 0 done, 1 a rule is broken, an answer differs or COMMAND failed, 2 wrong usage, 3 no
session bus or no host, 4 a file cannot be read or written.
)";
}

}  // namespace appleevents
