// Owners of Core Foundation objects.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <memory>
#include <string>
#include <type_traits>

namespace platform {

struct ReleaseObject {
    void operator()(CFTypeRef object) const { CFRelease(object); }
};

// What a function named Create or Copy gave, or null.
template <typename Reference>
using Owned = std::unique_ptr<std::remove_pointer_t<Reference>, ReleaseObject>;

// The path of a file URL, absolute and without a slash at its end; empty for null. A bundle gives
// URLs that are relative to its own.
std::string PathOf(CFURLRef url);

}  // namespace platform
