// Core Foundation values.
#include <CoreFoundation/CoreFoundation.h>

#include <cstring>

#include "CostCountCommon/src/platform/Platform.h"
#include "CostCountCommon/src/platform/TrailingSlashes.h"
#include "CostCountCommon/src/platform/macos/CoreFoundationOwner.h"

namespace platform {

std::string PathOf(CFURLRef url) {
    const Owned<CFURLRef> absolute(url == nullptr ? nullptr : CFURLCopyAbsoluteURL(url));
    const Owned<CFStringRef> text(
        absolute == nullptr ? nullptr
                            : CFURLCopyFileSystemPath(absolute.get(), kCFURLPOSIXPathStyle));
    const std::string path = text == nullptr ? std::string() : TextOf(text.get());
    return std::string(WithoutTrailingSlashes(path));
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
