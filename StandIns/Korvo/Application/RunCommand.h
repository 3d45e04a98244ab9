// korvo --library FILE ...
#pragma once

#include "CommandLine.h"

namespace korvo::application {

// Shows the windows and serves the word processor until a signal or the user ends it.
// Returns the exit status. `program` is the executable's path.
int runHost(const RunHost &run, const std::filesystem::path &program);

}  // namespace korvo::application
