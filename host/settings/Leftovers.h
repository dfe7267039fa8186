// Temporary files of programs that were killed.
#pragma once

#include <string>

namespace tallyquist {

// Removes the user's own ".tallyquist-XXXXXX" in a folder when they are an hour old: whoever still
// wrote them would long have been done. They may hold what was meant to be deleted since.
void RemoveLeftovers(const std::string& folder);

}  // namespace tallyquist
