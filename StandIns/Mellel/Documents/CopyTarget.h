// Where a copy of a document goes: a file, or standard output.
#pragma once

#include "Files.h"

#include <StandIns/Mellel/Console/Failure.h>

#include <expected>
#include <string>
#include <string_view>

namespace mellel::documents {

class CopyTarget {
 public:
  // Refused as resolveOutput does, and where nothing can be written, as far as one can tell before.
  // "-" is standard output, refused where it is a terminal: RTF is nothing to be read there.
  static std::expected<CopyTarget, console::Failure> find(const std::string &inputPath,
                                                          const std::string &outputPath);

  bool isStandardOutput() const;
  // As it was given.
  const std::string &name() const { return name_; }

  // The input is the document that the bytes were made of.
  std::expected<void, console::Failure> write(std::string_view bytes, const std::string &inputPath,
                                              const FileIdentity &input) const;

 private:
  CopyTarget(std::string name, std::string path);

  std::string name_;
  std::string path_;
};

}  // namespace mellel::documents
