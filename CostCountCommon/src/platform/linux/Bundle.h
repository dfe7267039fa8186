// What the Linux sources ask of the main bundle beyond the seam.
#pragma once

#include <string>
#include <string_view>

namespace platform {

// The text of `key` in the bundle's Info.plist; empty when there is none.
std::string MainBundleProperty(std::string_view key);

}  // namespace platform
