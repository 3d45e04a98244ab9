// Reading documents and writing copies of them. A copy appears whole or not at all, and never in
// the place of the document that it was made from.
#pragma once

#include <StandIns/Mellel/Console/Failure.h>

#include <sys/types.h>

#include <expected>
#include <string>
#include <string_view>

namespace mellel::documents {

// Which file it is, whatever its name has become.
struct FileIdentity {
  dev_t device = 0;
  ino_t number = 0;

  bool operator==(const FileIdentity &) const = default;
};

struct FileContents {
  std::string bytes;
  FileIdentity identity;
};

// A regular file of up to 1 GiB. One that is written to meanwhile is read again, and given up after
// some times: half of it would be old.
std::expected<FileContents, console::Failure> readFile(const std::string &path);

// "draft.rtf" becomes "draft formatted.rtf", in the same folder.
std::string defaultOutputPath(const std::string &inputPath);

// Where to write: the path, with a link at its end followed. Refused when it names the input
// (by any path or link) or something that is no regular file. Nothing is written.
std::expected<std::string, console::Failure> resolveOutput(const std::string &inputPath,
                                                           const std::string &outputPath);

// Whether a file can be written there, as far as one can tell before: to be asked before somebody
// works for it.
std::expected<void, console::Failure> checkWritable(const std::string &path);

// Writes a file beside the target first, forces it to the disk and puts it in the target's
// place, with the target's permissions or, if there is none yet, those of the input. Refused when
// the target has become the input since it was resolved: somebody has moved the document there.
// Whatever goes wrong, nothing is left behind. Signals that end the process wait meanwhile.
std::expected<void, console::Failure> writeFile(const std::string &path, std::string_view bytes,
                                                const std::string &inputPath,
                                                const FileIdentity &input);

}  // namespace mellel::documents
