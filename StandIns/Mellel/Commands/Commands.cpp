#include "Commands.h"

#include "FormatCommand.h"
#include "Report.h"

#include <Formats/CitationText.h>
#include <Formats/EventTable.h>
#include <Formats/Insertion.h>
#include <Formats/RecordMarkup.h>
#include <Formats/SmallMessages.h>
#include <Formats/Unicode.h>
#include <StandIns/Mellel/Conversation/Host.h>
#include <StandIns/Mellel/Conversation/ScanRequests.h>
#include <StandIns/Mellel/Documents/CopyTarget.h>
#include <StandIns/Mellel/Documents/Document.h>
#include <StandIns/Mellel/Documents/Files.h>
#include <StandIns/Mellel/RTF/DocumentRewriting.h>
#include <StandIns/Terminal/Output.h>
#include <StandIns/Terminal/Version.h>

#include <algorithm>
#include <string>
#include <utility>

namespace mellel::commands {

using console::Failure;
using console::Progress;
using console::Status;
using console::Telling;
using conversation::checkCitations;
using conversation::findCitations;
using conversation::Host;
using documents::CopyTarget;
using documents::openDocument;
using documents::readFile;
using rtf::documentWithCitation;
using rtf::findEndOfText;
using terminal::TerminalText;

namespace {

// How a command deals with the host and with whoever waits for it.
struct Manners {
  std::optional<std::chrono::seconds> timeout;
  bool isQuiet = false;

  Progress progress() const { return Progress(isQuiet ? Telling::hintsOnly : Telling::steps); }
};

std::expected<void, Failure> check(const CheckOptions &options, const Manners &manners) {
  Progress progress = manners.progress();
  const auto document = openDocument(options.input, progress);
  if (!document) {
    return std::unexpected(document.error());
  }
  const auto host = Host::connect(Host::Receiving::required, manners.timeout, progress);
  if (!host) {
    return std::unexpected(host.error());
  }
  const auto citations = checkCitations(**host, document->text.citations);
  if (!citations) {
    return std::unexpected(citations.error());
  }
  const auto found = findCitations(**host, document->text.citations);
  if (!found) {
    return std::unexpected(found.error());
  }
  if (options.asJSON) {
    terminal::print(checkJSON(*citations, *found));
  } else if (!manners.isQuiet) {
    terminal::print(checkTable(*citations, *found));
  }
  remarkOnListTexts(document->text);
  const auto missing = static_cast<std::size_t>(std::ranges::count(*found, false));
  return options.isStrict ? failIfMissing(missing, found->size(), "found") : Done();
}

// A citation of the references that are selected in the host.
std::expected<std::string, Failure> citationOfSelection(const Manners &manners,
                                                        Progress &progress) {
  const auto host = Host::connect(Host::Receiving::required, manners.timeout, progress);
  if (!host) {
    return std::unexpected(host.error());
  }
  const auto payload = (*host)->askIfAny(
      {formats::request::insertCitation, std::nullopt, "waiting for Korvo's selection", false},
      {formats::insertionEventClass, formats::answer::citation});
  if (!payload) {
    return std::unexpected(payload.error());
  }
  if (!*payload) {
    return std::unexpected(Failure{
        Status::cancelledByHost, "Korvo has no citation to insert: select references there first"});
  }
  const auto insertion = formats::decodeInsertion(**payload);
  if (!insertion) {
    return std::unexpected(
        Failure{Status::brokenDocumentOrReply, "Korvo's answer is broken: " + insertion.error()});
  }
  return formats::encodeUTF8(formats::decodeUTF8(insertion->citation));
}

// The citation of a single reference comes without the braces that mark a citation in a document.
std::string inBraces(const std::string &citation) {
  return citation.starts_with('{') && citation.ends_with('}') ? citation : '{' + citation + '}';
}

std::expected<void, Failure> insertInto(const InsertOptions::Place &place, const Manners &manners) {
  Progress progress = manners.progress();
  progress.begin("reading " + place.input);
  const auto document = readFile(place.input);
  if (!document) {
    return std::unexpected(document.error());
  }
  const auto output = CopyTarget::find(place.input, place.output);
  if (!output) {
    return std::unexpected(output.error());
  }
  const auto offset = findEndOfText(document->bytes, place.text);
  if (!offset) {
    return std::unexpected(
        Failure{Status::brokenDocumentOrReply, place.input + ": " + offset.error()});
  }
  if (!*offset) {
    return std::unexpected(
        Failure{Status::wrongUsage, "\"" + place.text + "\" stands nowhere in " + place.input});
  }
  const auto citation = citationOfSelection(manners, progress);
  if (!citation) {
    return std::unexpected(citation.error());
  }
  progress.begin("writing the copy");
  const std::string inserted = inBraces(*citation);
  const auto written = output->write(documentWithCitation(document->bytes, **offset, inserted),
                                     place.input, document->identity);
  if (!written) {
    return std::unexpected(written.error());
  }
  progress.end();
  if (!manners.isQuiet && !output->isStandardOutput()) {
    terminal::print("wrote: " + TerminalText::inOneLine(output->name()) +
                    "\ninserted: " + TerminalText::inOneLine(inserted) + "\n");
  }
  return {};
}

std::expected<void, Failure> insert(const InsertOptions &options, const Manners &manners) {
  if (options.place) {
    return insertInto(*options.place, manners);
  }
  Progress progress = manners.progress();
  const auto citation = citationOfSelection(manners, progress);
  if (!citation) {
    return std::unexpected(citation.error());
  }
  terminal::print(TerminalText::inOneLine(*citation) + "\n");
  return {};
}

bool holdsCitation(std::string_view text) {
  const std::u16string group = formats::decodeUTF8(text);
  std::u16string_view inner = formats::trimmed(group);
  if (inner.starts_with(u'{') && inner.ends_with(u'}') && inner.size() > 1) {
    inner = inner.substr(1, inner.size() - 2);
  }
  const auto components = formats::citationComponents(inner);
  return std::ranges::any_of(components, [](std::u16string_view component) {
    return !formats::parseCitationText(component).searchText.empty();
  });
}

std::expected<void, Failure> open(const OpenOptions &options, const Manners &manners) {
  if (!holdsCitation(options.citation)) {
    return std::unexpected(
        Failure{Status::wrongUsage, "\"" + options.citation + "\" holds no citation"});
  }
  Progress progress = manners.progress();
  const auto host = Host::connect(Host::Receiving::ifPossible, manners.timeout, progress);
  if (!host) {
    return std::unexpected(host.error());
  }
  const auto handled =
      (*host)->askForReply({formats::request::findCitation, options.citation + '\0',
                            "waiting for Korvo to open the reference", false});
  if (!handled) {
    return std::unexpected(handled.error());
  }
  return {};
}

std::expected<void, Failure> handshake(const Manners &manners) {
  Progress progress = manners.progress();
  const auto host = Host::connect(Host::Receiving::required, manners.timeout, progress);
  if (!host) {
    return std::unexpected(host.error());
  }
  const auto greeting = formats::encodeHandshake({1, 0});
  const auto payload =
      (*host)->ask({formats::request::handshake, std::string(greeting.begin(), greeting.end()),
                    "waiting for Korvo's preferences", false},
                   {formats::mellelSignature, formats::answer::preferences});
  if (!payload) {
    return std::unexpected(payload.error());
  }
  const auto preferences = formats::decodePreferences(*payload);
  if (!preferences) {
    return std::unexpected(
        Failure{Status::brokenDocumentOrReply, "Korvo's answer is broken: " + preferences.error()});
  }
  TerminalText line("preferences:");
  for (const std::uint16_t field : *preferences) {
    line += " " + TerminalText::number(field);
  }
  terminal::print(line + "\n");
  return {};
}

// Runs each kind of command with its own options.
struct Runner {
  Manners manners;

  std::expected<void, Failure> operator()(const FormatOptions &options) const {
    return format(options, manners.timeout, manners.isQuiet);
  }
  std::expected<void, Failure> operator()(const CheckOptions &options) const {
    return check(options, manners);
  }
  std::expected<void, Failure> operator()(const InsertOptions &options) const {
    return insert(options, manners);
  }
  std::expected<void, Failure> operator()(const OpenOptions &options) const {
    return open(options, manners);
  }
  std::expected<void, Failure> operator()(const HandshakeOptions &) const {
    return handshake(manners);
  }
  std::expected<void, Failure> operator()(const HelpOptions &) const {
    terminal::print(helpText());
    return {};
  }
  std::expected<void, Failure> operator()(const VersionOptions &) const {
    terminal::print(terminal::versionLine("mellel"));
    return {};
  }
};

}  // namespace

std::expected<void, Failure> run(const Options &options) {
  return std::visit(Runner{{options.timeout, options.isQuiet}}, options.command);
}

}  // namespace mellel::commands
