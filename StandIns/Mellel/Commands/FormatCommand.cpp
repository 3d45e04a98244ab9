#include "FormatCommand.h"

#include "Report.h"

#include <Platform/RunLoop.h>
#include <StandIns/Mellel/Conversation/Host.h>
#include <StandIns/Mellel/Conversation/RunLoop.h>
#include <StandIns/Mellel/Conversation/ScanRequests.h>
#include <StandIns/Mellel/Documents/Document.h>
#include <StandIns/Mellel/Documents/Files.h>
#include <StandIns/Mellel/Documents/FileWatch.h>
#include <StandIns/Mellel/RTF/DocumentRewriting.h>
#include <StandIns/Terminal/Output.h>

#include <signal.h>
#include <unistd.h>

#include <functional>
#include <span>
#include <string>
#include <utility>

namespace mellel::commands {

using console::complain;
using console::Failure;
using console::Progress;
using console::Status;
using conversation::formatByScan;
using conversation::formatLive;
using conversation::FormattedCitations;
using conversation::Host;
using conversation::runLoopUntil;
using conversation::WantedFormatting;
using documents::defaultOutputPath;
using documents::Document;
using documents::FileWatch;
using documents::openDocument;
using documents::resolveOutput;
using documents::writeFile;
using terminal::TerminalText;

namespace {

using Clock = Progress::Clock;

// An editor may touch the file several times in one go.
constexpr std::chrono::milliseconds timeToSettle{30};

struct Update {
  Document document;
  FormattedCitations formatted;
};

std::expected<Update, Failure> update(Host &host, Document document, const FormatOptions &options,
                                      const std::string &output) {
  const WantedFormatting wanted{options.style, options.wantsBibliography};
  const std::span<const rtf::Citation> citations = document.text.citations;
  auto formatted =
      options.isLive ? formatLive(host, citations, wanted) : formatByScan(host, citations, wanted);
  if (!formatted) {
    return std::unexpected(formatted.error());
  }
  const std::string copy =
      rtf::formattedDocument(document.rtf, document.text, formatted->texts,
                             formatted->bibliography.value_or(rtf::BibliographyParagraphs{}));
  const auto written = writeFile(output, copy, options.input, document.identity);
  if (!written) {
    return std::unexpected(written.error());
  }
  return Update{std::move(document), std::move(*formatted)};
}

// Keeps the copy up to date until the process is interrupted.
class WatchedDocument {
 public:
  WatchedDocument(Host &host, const FormatOptions &options, std::string output, Progress &progress)
      : host_(host), options_(options), output_(std::move(output)), progress_(progress) {}

  std::expected<void, Failure> keepUpToDate(Document document) {
    auto watch = FileWatch::start(options_.input);
    if (!watch) {
      return std::unexpected(watch.error());
    }
    if (const auto first = updateOnce(std::move(document), Clock::now()); !first) {
      return first;
    }
    bool wasSaved = false;
    const platform::RunLoopDescriptor descriptorWatch(
        watch->descriptor(), [&] { wasSaved = watch->wasSaved() || wasSaved; });
    for (;;) {
      runLoopUntil([&] { return wasSaved; }, std::nullopt, progress_);
      const Clock::time_point begin = Clock::now();
      do {
        wasSaved = false;
      } while (runLoopUntil([&] { return wasSaved; }, Clock::now() + timeToSettle, progress_));
      updateAgain(begin);
    }
  }

 private:
  std::expected<void, Failure> updateOnce(Document document, Clock::time_point begin) {
    const std::size_t contents = std::hash<std::string>()(document.rtf);
    if (contents == lastContents_) {
      return {};
    }
    const auto updated = update(host_, std::move(document), options_, output_);
    if (!updated) {
      return std::unexpected(updated.error());
    }
    lastContents_ = contents;
    const auto time = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - begin);
    terminal::print("updated: " + TerminalText::inOneLine(output_) + ": " +
                    TerminalText::number(updated->formatted.count()) + " of " +
                    TerminalText::number(updated->formatted.texts.size()) + " citations, " +
                    TerminalText::number(time.count()) + " ms\n");
    return {};
  }

  // While an editor or the host is in trouble the copy stays as it was last.
  void updateAgain(Clock::time_point begin) {
    progress_.restart();
    auto document = openDocument(options_.input);
    auto updated = document ? updateOnce(std::move(*document), begin)
                            : std::expected<void, Failure>(std::unexpected(document.error()));
    if (!updated) {
      lastContents_.reset();
      complain(updated.error());
    }
  }

  Host &host_;
  const FormatOptions &options_;
  std::string output_;
  Progress &progress_;
  std::optional<std::size_t> lastContents_;
};

void endCleanlyWhenInterrupted() {
  struct sigaction action{};
  // The copy is always whole, so there is nothing to finish.
  action.sa_handler = [](int) { _exit(static_cast<int>(Status::done)); };
  sigemptyset(&action.sa_mask);
  sigaction(SIGINT, &action, nullptr);
  sigaction(SIGTERM, &action, nullptr);
}

}  // namespace

std::expected<void, Failure> format(const FormatOptions &options,
                                    std::optional<std::chrono::seconds> timeout) {
  Progress progress;
  auto document = openDocument(options.input);
  if (!document) {
    return std::unexpected(document.error());
  }
  const auto output =
      resolveOutput(options.input, options.output.value_or(defaultOutputPath(options.input)));
  if (!output) {
    return std::unexpected(output.error());
  }
  const auto receiving = options.isLive ? Host::Receiving::ifPossible : Host::Receiving::required;
  const auto host = Host::connect(receiving, timeout, progress);
  if (!host) {
    return std::unexpected(host.error());
  }
  if (options.watches) {
    endCleanlyWhenInterrupted();
    return WatchedDocument(**host, options, *output, progress).keepUpToDate(std::move(*document));
  }
  const auto updated = update(**host, std::move(*document), options, *output);
  if (!updated) {
    return std::unexpected(updated.error());
  }
  terminal::print(formattingReport(*output, updated->formatted, updated->document.text,
                                   options.wantsBibliography));
  return {};
}

}  // namespace mellel::commands
