// How the platform seam gives paths on all systems: without a slash at the end.
#pragma once

#include <string_view>

namespace platform {

// "/" stays. The result is a part of `path`.
constexpr std::string_view WithoutTrailingSlashes(std::string_view path) {
    while (path.size() > 1 && path.back() == '/') {
        path.remove_suffix(1);
    }
    return path;
}

}  // namespace platform
