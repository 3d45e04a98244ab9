#include "Applications.h"

#include "Documents.h"

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
