// The names in a folder, for where memory may run out: std::filesystem's iterators end the process
// then, because some of their steps may not throw.
#pragma once

#include <string>
#include <vector>

namespace platform {

// Sets `*names` to the names in no order, but those of the folder itself and its parent. False, and
// nothing set, when the folder cannot be read. No cancellation point.
[[nodiscard]] bool FolderNames(const std::string& folder, std::vector<std::string>* names);

}  // namespace platform
