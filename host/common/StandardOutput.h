// What the program prints as its result.
#pragma once

#include <string_view>

namespace tallyquist {

// Writes all of it, unbuffered. Throws CommandError when that fails. A reader that went away ends
// the process as it ends any filter, so there must be nothing left to clean up.
void WriteStandardOutput(std::string_view text);

}  // namespace tallyquist
