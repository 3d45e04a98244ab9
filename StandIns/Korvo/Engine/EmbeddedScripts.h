// The JavaScript that the engine runs, as part of the program: nothing to install beside
// it, nothing to go missing. ASCII.
#pragma once

#include <string_view>

namespace korvo::engine {

std::string_view citationScript();
std::string_view importScript();

}  // namespace korvo::engine
