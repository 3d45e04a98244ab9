// What a program told on standard error while it worked.
#pragma once

#include <string>

namespace test_support {

// The lines (UTF-8, each with its end) but for those of progress, which end with " ...": any step
// may take long enough to be told where a disk or a processor is busy.
std::string withoutProgress(const std::string &told);

}  // namespace test_support
