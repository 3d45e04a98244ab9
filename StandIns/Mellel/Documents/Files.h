// Reading documents and writing copies of them. A copy appears whole or not at all, and never in
// the place of the document that it was made from.
#pragma once

#include <StandIns/Mellel/Console/Failure.h>

#include <expected>
#include <string>
#include <string_view>

namespace mellel::documents {

// The bytes of a regular file of up to 1 GiB.
std::expected<std::string, console::Failure> readFile(const std::string &path);

// "draft.rtf" becomes "draft formatted.rtf", in the same folder.
std::string defaultOutputPath(const std::string &inputPath);

// Where to write: the path, with a link at its end followed. Refused when it names the input
// (by any path or link) or something that is no regular file. Nothing is written.
std::expected<std::string, console::Failure> resolveOutput(const std::string &inputPath,
                                                           const std::string &outputPath);

// Writes a file beside the target first, forces it to the disk and puts it in the target's
// place, with the target's permissions or, if there is none yet, those of the input. Whatever goes
// wrong, nothing is left behind. Signals that end the process wait meanwhile.
std::expected<void, console::Failure> writeFile(const std::string &path, std::string_view bytes,
                                                const std::string &inputPath);

}  // namespace mellel::documents
