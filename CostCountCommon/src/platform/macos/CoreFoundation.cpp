// Core Foundation values.
#include <CoreFoundation/CoreFoundation.h>

#include <limits.h>

#include <array>
#include <cstring>

#include "CostCountCommon/src/platform/Platform.h"
#include "CostCountCommon/src/platform/macos/CoreFoundationOwner.h"

namespace platform {

std::string PathOf(CFURLRef url) {
    const Owned<CFURLRef> absolute(url == nullptr ? nullptr : CFURLCopyAbsoluteURL(url));
    std::array<unsigned char, PATH_MAX> path{};
    const bool fits =
        absolute != nullptr &&
        CFURLGetFileSystemRepresentation(absolute.get(), 1, path.data(), CFIndex{PATH_MAX}) != 0;
    return fits ? reinterpret_cast<const char*>(path.data()) : std::string();
}

CFStringRef CreateString(const char* text) {
    return CFStringCreateWithCString(kCFAllocatorDefault, text, kCFStringEncodingUTF8);
}

CFURLRef CreateFileUrl(const std::string& path, bool isFolder) {
    const bool isPath = !path.empty() && path.find('\0') == std::string::npos;
    const Owned<CFStringRef> text(isPath ? CreateString(path.c_str()) : nullptr);
    return text == nullptr ? nullptr
                           : CFURLCreateWithFileSystemPath(kCFAllocatorDefault, text.get(),
                                                           kCFURLPOSIXPathStyle, isFolder ? 1 : 0);
}

std::string TextOf(CFStringRef string) {
    const CFIndex size =
        CFStringGetMaximumSizeForEncoding(CFStringGetLength(string), kCFStringEncodingUTF8) + 1;
    std::string text(static_cast<size_t>(size), '\0');
    if (CFStringGetCString(string, text.data(), size, kCFStringEncodingUTF8) == 0) {
        return {};
    }
    text.resize(std::strlen(text.c_str()));
    return text;
}

}  // namespace platform
