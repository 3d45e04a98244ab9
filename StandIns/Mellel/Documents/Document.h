// A document as a command works on it: the bytes of its file, and where the citations stand in
// them.
#pragma once

#include "Files.h"

#include <StandIns/Mellel/Console/Failure.h>
#include <StandIns/Mellel/Console/Progress.h>
#include <StandIns/Mellel/RTF/CitationFinder.h>

#include <expected>
#include <string>

namespace mellel::documents {

struct Document {
  std::string rtf;
  rtf::DocumentText text;
  FileIdentity identity;  // of the file that it was read from
};

// A step of the progress. The failure names the file.
std::expected<Document, console::Failure> openDocument(const std::string &path,
                                                       console::Progress &progress);

}  // namespace mellel::documents
