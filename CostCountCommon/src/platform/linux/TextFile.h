// Small text files, read whole.
#pragma once

#include <cstddef>
#include <string>

namespace platform {

// False with the reason in errno when `path` cannot be read, is no regular file, or is larger than
// `limit` bytes (EFBIG). No cancellation point.
[[nodiscard]] bool ReadTextFile(const std::string& path, size_t limit, std::string* text);

}  // namespace platform
