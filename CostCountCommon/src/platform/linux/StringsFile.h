// The .strings format: a table of texts by key, one `"key" = "text";` after the other.
#pragma once

#include <map>
#include <string>
#include <string_view>

namespace platform {

// The table in the bytes of a file, keys and texts in UTF-8. `key;` stands for `key = key;`. Of two
// entries with one key the later counts.
//
// The bytes are UTF-8, or UTF-16 with a byte order mark; other bytes give an empty table. What
// follows a mistake is left out, so that one forgotten semicolon does not take away the texts
// before it. A lone surrogate, in the file or escaped, becomes U+FFFD.
std::map<std::string, std::string> ParseStringsFile(std::string_view bytes);

}  // namespace platform
