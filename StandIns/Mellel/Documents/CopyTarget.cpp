#include "CopyTarget.h"

#include <utility>

namespace mellel::documents {

using console::Failure;

namespace {

constexpr std::string_view nameOfStandardOutput = "-";

}  // namespace

CopyTarget::CopyTarget(std::string name, std::string path)
    : name_(std::move(name)), path_(std::move(path)) {}

std::expected<CopyTarget, Failure> CopyTarget::find(const std::string &inputPath,
                                                    const std::string &outputPath) {
  if (outputPath == nameOfStandardOutput) {
    if (const auto usable = checkStandardOutput(); !usable) {
      return std::unexpected(usable.error());
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
  return isStandardOutput() ? writeToStandardOutput(bytes)
                            : writeFile(path_, bytes, inputPath, input);
}

}  // namespace mellel::documents
