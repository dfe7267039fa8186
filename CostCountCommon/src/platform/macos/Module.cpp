// Loads the code of bundles.
#include <CoreFoundation/CoreFoundation.h>

#include "CostCountCommon/src/CancellationOff.h"
#include "CostCountCommon/src/platform/Platform.h"
#include "CostCountCommon/src/platform/macos/CoreFoundationOwner.h"

namespace platform {
namespace {

void Explain(std::string* reason, const std::string& text) {
    if (reason != nullptr) {
        *reason = text;
    }
}

std::string Description(CFErrorRef error) {
    const Owned<CFStringRef> text(error == nullptr ? nullptr : CFErrorCopyDescription(error));
    return text == nullptr ? "cannot be loaded" : TextOf(text.get());
}

}  // namespace

void* LoadModule(const char* path, std::string* reason) {
    const CancellationOff whole;
    const Owned<CFURLRef> url(CreateFileUrl(path, true));
    Owned<CFBundleRef> bundle(url == nullptr ? nullptr
                                             : CFBundleCreate(kCFAllocatorDefault, url.get()));
    if (bundle == nullptr) {
        Explain(reason, std::string(path).append(": is no bundle"));
        return nullptr;
    }
    CFErrorRef error = nullptr;
    const bool isLoaded = CFBundleLoadExecutableAndReturnError(bundle.get(), &error) != 0;
    const Owned<CFErrorRef> owned(error);
    if (!isLoaded) {
        Explain(reason, std::string(path).append(": ").append(Description(error)));
        return nullptr;
    }
    // Never given back: with its last reference a bundle takes its code out of memory.
    CFRetain(bundle.get());
    return bundle.release();
}

void* FindFunction(void* module, const char* name) {
    const CancellationOff whole;
    const Owned<CFStringRef> text(CreateString(name));
    return text == nullptr
               ? nullptr
               : CFBundleGetFunctionPointerForName(static_cast<CFBundleRef>(module), text.get());
}

void ReleaseModule(void* module) {
    CFRelease(module);
}

}  // namespace platform
