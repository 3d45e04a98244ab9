// Identifiers that no two references in the world share.
#pragma once

#include <string>

namespace korvo::library {

// A random UUID (version 4) in its usual form, upper case.
std::string randomIdentifier();

}  // namespace korvo::library
