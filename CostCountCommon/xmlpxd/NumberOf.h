// Numbers in files.
#pragma once

#include <cstdlib>
#include <string>

namespace xmlpxd {

// A number as atoi reads it, but defined for one that is too large: the lowest 32 bits, so that an
// unsigned number survives the trip through its decimal text.
inline int NumberOf(const std::string& text) {
    return static_cast<int>(std::strtol(text.c_str(), nullptr, 10));
}

}  // namespace xmlpxd
