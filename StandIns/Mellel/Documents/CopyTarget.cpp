#include "CopyTarget.h"

#include <StandIns/Terminal/Output.h>

#include <utility>

namespace mellel::documents {

using console::Failure;
using console::Status;

namespace {

constexpr std::string_view nameOfStandardOutput = "-";

}  // namespace

CopyTarget::CopyTarget(std::string name, std::string path)
    : name_(std::move(name)), path_(std::move(path)) {}

std::expected<CopyTarget, Failure> CopyTarget::find(const std::string &inputPath,
                                                    const std::string &outputPath) {
  if (outputPath == nameOfStandardOutput) {
    if (terminal::isShown()) {
      return std::unexpected(
          Failure{Status::wrongUsage, "-o - needs a file or another program as standard output"});
    }
    return CopyTarget(outputPath, {});
  }
  const auto path = resolveOutput(inputPath, outputPath);
  if (!path) {
    return std::unexpected(path.error());
  }
  if (const auto writable = checkWritable(*path); !writable) {
    return std::unexpected(writable.error());
  }
  return CopyTarget(outputPath, *path);
}

bool CopyTarget::isStandardOutput() const { return path_.empty(); }

std::expected<void, Failure> CopyTarget::write(std::string_view bytes, const std::string &inputPath,
                                               const FileIdentity &input) const {
  if (!isStandardOutput()) {
    return writeFile(path_, bytes, inputPath, input);
  }
  terminal::passOn(bytes);
  if (!terminal::wasPrinted()) {
    return std::unexpected(
        Failure{Status::brokenDocumentOrReply, "cannot write to standard output"});
  }
  return {};
}

}  // namespace mellel::documents
