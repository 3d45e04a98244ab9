// mellel scan and mellel live: a copy of the document with its citations formatted.
#pragma once

#include "Options.h"

#include <StandIns/Mellel/Console/Failure.h>
#include <StandIns/Mellel/RTF/CitationFinder.h>

#include <chrono>
#include <cstddef>
#include <expected>
#include <optional>
#include <string_view>

namespace mellel::commands {

using Done = std::expected<void, console::Failure>;

Done format(const FormatOptions &options, std::optional<std::chrono::seconds> timeout,
            bool isQuiet);

// For --strict: a failure of its own status where citations are missing, "2 of 43 citations were
// not found".
Done failIfMissing(std::size_t missing, std::size_t all, std::string_view what);

// Says that there are citations which are left as they are, because no program with lists shows
// them.
void remarkOnListTexts(const rtf::DocumentText &document);

}  // namespace mellel::commands
