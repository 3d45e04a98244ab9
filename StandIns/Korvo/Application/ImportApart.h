// How korvo reads the files of other reference managers.
#pragma once

#include <StandIns/Korvo/Engine/ImportProcess.h>

namespace korvo::application {

// In a process of its own, within the bounds of ImportBounds.
inline std::expected<engine::ImportResult, std::string> importApart(
    const std::filesystem::path &file, const engine::ImportProgress &progress) {
  return engine::importInOwnProcess(file, progress);
}

}  // namespace korvo::application
