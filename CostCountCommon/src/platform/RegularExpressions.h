// What the platform seam's regular expressions have in common on all systems.
#pragma once

#include <string_view>

namespace platform {

// Whether an expression can be compiled and searched for in reasonable time, memory and stack. A
// reference back to a group, or many repetitions within repetitions, may cost without bound.
bool IsModest(std::string_view expression);

}  // namespace platform
