// korvo import FILE... --into LIBRARY
#pragma once

#include "CommandLine.h"

namespace korvo::application {

// Returns the exit status. Entries that could not be read are named on standard error.
int runImport(const ImportFiles &import);

}  // namespace korvo::application
