#include "Applications.h"

#include "Documents.h"

#include <Tests/Support/WaitUntil.h>

#include <unistd.h>

#include <csignal>
#include <cstdlib>

namespace endtoend {

namespace {

// The position after the heading that comes before the bibliography; the drafts say this word once.
std::size_t endOfBody(const std::string &rtf) {
  const std::string heading = "References";
  const std::size_t position = rtf.rfind("\n" + heading);
  if (position != std::string::npos) {
    return position + 1 + heading.size();
  }
  const std::size_t anywhere = rtf.rfind(heading);
  return anywhere == std::string::npos ? rtf.size() : anywhere + heading.size();
}

// Whether some program on this desktop looks up a port by its name, or adds one.
bool arePortsLocked() {
  const char *temporary = std::getenv("TEMP");
  return temporary != nullptr &&
         std::filesystem::exists(std::filesystem::path(temporary) /
                                 ("GNUstepSecure" + std::to_string(getuid())) /
                                 "NSMessagePort/names/lock");
}

std::vector<std::string> hostArguments(const std::vector<std::string> &options,
                                       const std::filesystem::path &library) {
  std::vector<std::string> arguments = {program("korvo"), "--library", library.string()};
  arguments.insert(arguments.end(), options.begin(), options.end());
  return arguments;
}

}  // namespace

std::string program(const std::string &name) { return std::string(PROGRAM_DIRECTORY) + "/" + name; }

std::filesystem::path example(const std::string &name) {
  return std::filesystem::path(PROJECT_DIRECTORY) / "Examples" / name;
}

Host::Host(const std::vector<std::string> &options, const std::filesystem::path &library)
    : process_(hostArguments(options, library)), ready_(process_.waitForLine("ready")) {}

Host::~Host() { kill(); }

// A program that is killed within that lock leaves it behind, and one that is stopped keeps it: the
// others have no ports meanwhile, for up to 15 s. Whether it was within shows only once it stands.
void Host::stop() {
  test_support::waitUntil(patience, [this] {
    process_.stop();
    const bool isOutside = !process_.isRunning() || !arePortsLocked();
    if (!isOutside) {
      process_.send(SIGCONT);
    }
    return isOutside;
  });
}

// To ask it to end instead would have it save its windows' places and its user's choices, for the
// next test.
void Host::kill() {
  stop();
  process_.end();
}

std::string Scan::formatted(const std::string &citation) const {
  const auto found = formattedRTF.find(citation);
  return found == formattedRTF.end() ? "(no such citation)" : textOf(found->second);
}

std::string Scan::bibliography() const { return textOf(bibliographyRTF); }

Scan scanFile(const std::filesystem::path &draft, const std::vector<std::string> &options,
              const std::string &command) {
  const TemporaryDirectory directory;
  const std::filesystem::path copy = directory.path() / "copy.rtf";
  std::vector<std::string> arguments = {program("mellel"), command, draft.string(), "-o",
                                        copy.string()};
  arguments.insert(arguments.end(), options.begin(), options.end());

  Scan scan;
  scan.original = readFile(draft);
  scan.result = run(arguments);
  if (!std::filesystem::exists(copy)) {
    return scan;
  }
  scan.copy = readFile(copy);
  const Cut cut = cutAtBraces(scan.original.substr(0, endOfBody(scan.original)));
  const std::size_t end = endOfBody(scan.copy);
  if (const auto replacements = whatReplaced(cut, scan.copy.substr(0, end))) {
    for (std::size_t index = 0; index < cut.spans.size(); ++index) {
      scan.formattedRTF.emplace(textOf(cut.spans[index]), (*replacements)[index]);
    }
  }
  scan.bibliographyRTF = scan.copy.substr(end);
  return scan;
}

Scan scan(const std::string &draft, const std::vector<std::string> &options,
          const std::string &command) {
  return scanFile(example(draft), options, command);
}

}  // namespace endtoend
