#include "FormatCommand.h"

#include "Report.h"
#include "StyleName.h"

#include <Platform/RunLoop.h>
#include <StandIns/Mellel/Conversation/Host.h>
#include <StandIns/Mellel/Conversation/RunLoop.h>
#include <StandIns/Mellel/Conversation/ScanRequests.h>
#include <StandIns/Mellel/Documents/CopyTarget.h>
#include <StandIns/Mellel/Documents/Document.h>
#include <StandIns/Mellel/Documents/Files.h>
#include <StandIns/Mellel/Documents/FileWatch.h>
#include <StandIns/Mellel/RTF/DocumentRewriting.h>
#include <StandIns/Mellel/RTF/Footnotes.h>
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
using console::remark;
using console::Status;
using console::Telling;
using conversation::formatByScan;
using conversation::formatLive;
using conversation::FormattedCitations;
using conversation::Host;
using conversation::runLoopUntil;
using conversation::WantedFormatting;
using documents::CopyTarget;
using documents::defaultOutputPath;
using documents::Document;
using documents::FileWatch;
using documents::openDocument;
using terminal::TerminalText;

namespace {

using Clock = std::chrono::steady_clock;

// An editor may touch the file several times in one go.
constexpr std::chrono::milliseconds timeToSettle{30};

struct Update {
  Document document;
  FormattedCitations formatted;
  std::size_t footnotes = 0;
};

std::string counted(std::size_t count, const std::string &things) {
  return std::to_string(count) + ' ' + things + (count == 1 ? "" : "s");
}

// What the user should know of an answer that is none to his wishes.
void remarkOn(const Update &updated, const FormatOptions &options) {
  const FormattedCitations &formatted = updated.formatted;
  if (!options.style.empty() && !mayBeNamed(options.style, formatted.styleName)) {
    remark("Korvo formatted in \"" + formatted.styleName + "\": if that is no other name of \"" +
           options.style + "\", it knows no such style");
  }
  const bool areSentences = rtf::areSentences(formatted.texts);
  const std::size_t inText = rtf::countForFootnotes(updated.document.text, formatted.texts);
  if (areSentences && inText > 0 && !options.makesFootnotes) {
    remark(counted(inText, "citation") +
           " in the running text became sentences, as this style is one for footnotes: "
           "--footnotes makes such");
  } else if (!areSentences && inText > 0 && options.makesFootnotes) {
    remark("no footnotes were made: this style is one for the running text");
  }
  remarkOnListTexts(updated.document.text);
}

std::expected<Update, Failure> update(Host &host, Document document, const FormatOptions &options,
                                      const CopyTarget &output, Progress &progress) {
  const WantedFormatting wanted{options.style, options.wantsBibliography};
  const std::span<const rtf::Citation> citations = document.text.citations;
  auto formatted =
      options.isLive ? formatLive(host, citations, wanted) : formatByScan(host, citations, wanted);
  if (!formatted) {
    return std::unexpected(formatted.error());
  }
  progress.begin("writing the copy");
  const std::size_t footnotes = options.makesFootnotes && rtf::areSentences(formatted->texts)
                                    ? rtf::countForFootnotes(document.text, formatted->texts)
                                    : 0;
  const std::string copy = rtf::formattedDocument(
      document.rtf, document.text, formatted->texts,
      formatted->bibliography.value_or(rtf::BibliographyParagraphs{}),
      footnotes > 0 ? rtf::PlaceOfCitations::inFootnotes : rtf::PlaceOfCitations::inText);
  const auto written = output.write(copy, options.input, document.identity);
  if (!written) {
    return std::unexpected(written.error());
  }
  progress.end();
  return Update{std::move(document), std::move(*formatted), footnotes};
}

// Keeps the copy up to date until the process is interrupted.
class WatchedDocument {
 public:
  WatchedDocument(Host &host, const FormatOptions &options, CopyTarget output, Progress &progress,
                  bool isQuiet)
      : host_(host),
        options_(options),
        output_(std::move(output)),
        progress_(progress),
        isQuiet_(isQuiet) {}

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
      runLoopUntil([&] { return wasSaved; }, std::nullopt);
      const Clock::time_point begin = Clock::now();
      do {
        wasSaved = false;
      } while (runLoopUntil([&] { return wasSaved; }, Clock::now() + timeToSettle));
      updateAgain(begin);
    }
  }

 private:
  std::expected<void, Failure> updateOnce(Document document, Clock::time_point begin) {
    const std::size_t contents = std::hash<std::string>()(document.rtf);
    if (contents == lastContents_) {
      return {};
    }
    const auto updated = update(host_, std::move(document), options_, output_, progress_);
    if (!updated) {
      return std::unexpected(updated.error());
    }
    lastContents_ = contents;
    if (!std::exchange(hasRemarked_, true)) {
      remarkOn(*updated, options_);
    }
    if (isQuiet_) {
      return {};
    }
    const auto time = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - begin);
    terminal::print("updated: " + TerminalText::inOneLine(output_.name()) + ": " +
                    TerminalText::number(updated->formatted.count()) + " of " +
                    TerminalText::number(updated->formatted.texts.size()) + " citations, " +
                    TerminalText::number(time.count()) + " ms\n");
    return {};
  }

  // While an editor or the host is in trouble the copy stays as it was last.
  void updateAgain(Clock::time_point begin) {
    progress_.restart();
    auto document = openDocument(options_.input, progress_);
    auto updated = document ? updateOnce(std::move(*document), begin)
                            : std::expected<void, Failure>(std::unexpected(document.error()));
    progress_.end();
    if (!updated) {
      lastContents_.reset();
      complain(updated.error());
    }
  }

  Host &host_;
  const FormatOptions &options_;
  CopyTarget output_;
  Progress &progress_;
  bool isQuiet_;
  bool hasRemarked_ = false;
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

void report(const Update &updated, const FormatOptions &options, const CopyTarget &output,
            bool isQuiet) {
  const FormattedCopy copy{
      .output = output.isStandardOutput() ? std::string_view() : std::string_view(output.name()),
      .askedStyle = options.style,
      .formatted = updated.formatted,
      .document = updated.document.text,
      .wantsBibliography = options.wantsBibliography,
      .footnotes = updated.footnotes};
  if (options.asJSON) {
    terminal::print(formattingJSON(copy));
  } else if (!isQuiet && output.isStandardOutput()) {
    terminal::printError(formattingReport(copy));
  } else if (!isQuiet) {
    terminal::print(formattingReport(copy));
  }
}

}  // namespace

Done failIfMissing(std::size_t missing, std::size_t all, std::string_view what) {
  if (missing == 0) {
    return {};
  }
  return std::unexpected(Failure{
      Status::notAllFound, std::to_string(missing) + " of " + counted(all, "citation") +
                               (missing == 1 ? " was not " : " were not ") + std::string(what)});
}

void remarkOnListTexts(const rtf::DocumentText &document) {
  if (document.citationsInListTexts > 0) {
    remark(counted(document.citationsInListTexts, "citation") +
           " left out: in a list's text for programs without lists, which others do not show");
  }
}

Done format(const FormatOptions &options, std::optional<std::chrono::seconds> timeout,
            bool isQuiet) {
  Progress progress(isQuiet ? Telling::hintsOnly : Telling::steps);
  auto document = openDocument(options.input, progress);
  if (!document) {
    return std::unexpected(document.error());
  }
  const auto output =
      CopyTarget::find(options.input, options.output.value_or(defaultOutputPath(options.input)));
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
    return WatchedDocument(**host, options, *output, progress, isQuiet)
        .keepUpToDate(std::move(*document));
  }
  const auto updated = update(**host, std::move(*document), options, *output, progress);
  if (!updated) {
    return std::unexpected(updated.error());
  }
  report(*updated, options, *output, isQuiet);
  remarkOn(*updated, options);
  const std::size_t all = updated->formatted.texts.size();
  return options.isStrict ? failIfMissing(all - updated->formatted.count(), all, "formatted")
                          : Done();
}

}  // namespace mellel::commands
