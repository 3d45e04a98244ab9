// Loads a plug-in bundle and starts it, as the contract with plug-ins says.
#pragma once

#import <HostContract/HostContract.h>

#include <expected>
#include <filesystem>
#include <string>

namespace korvo::application {

// After this the plug-in has its adapter and is started. The error is one line that names
// the bundle: it cannot be loaded, its principal class is no word-processor plug-in, or it
// says that it is not available.
std::expected<void, std::string> startPlugIn(const std::filesystem::path &bundle,
                                             id<KorvoWordProcessorIntegrationAdapter> adapter);

}  // namespace korvo::application
