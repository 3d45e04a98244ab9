// Reads a library file in a process of its own.
//
// A library may come from somebody else, and is read by a script: what it may cost cannot be known
// before. A process can be bounded, and ended, whatever goes on in it; and where it crashes, the
// host lives on.
#pragma once

#include "LibraryImporter.h"

#include <chrono>
#include <cstddef>
#include <expected>
#include <filesystem>
#include <string>

namespace korvo::engine {

struct ImportBounds {
  // Of memory. A file of 200 MB that is one text took 2,325, one of 100,000 articles 1,202.
  std::size_t mebibytes = 3072;
  // Of the processor's time. The 100,000 articles took 11 s.
  std::chrono::seconds time{300};
};

// The program that reads, beside the program that runs.
std::filesystem::path importProgram();

// As LibraryImporter::importFile. A reader that goes beyond its bounds, crashes or cannot be
// started is an error of one line that names the file. The reader ends with this process's calling
// thread.
std::expected<ImportResult, std::string> importInOwnProcess(
    const std::filesystem::path &file, const ImportProgress &progress = {},
    const ImportBounds &bounds = {}, const std::filesystem::path &program = importProgram());

}  // namespace korvo::engine
