// Where the main bundle lies, as the bundle services tell.
#include <CoreFoundation/CoreFoundation.h>

#include "CostCountCommon/src/CancellationOff.h"
#include "CostCountCommon/src/platform/Platform.h"
#include "CostCountCommon/src/platform/macos/CoreFoundationOwner.h"

namespace platform {
namespace {

// A folder of the main bundle that a function such as CFBundleCopyBundleURL tells.
std::string FolderOf(CFURLRef (*copyUrl)(CFBundleRef)) {
    const CancellationOff whole;
    const CFBundleRef bundle = CFBundleGetMainBundle();
    return bundle == nullptr ? std::string() : PathOf(Owned<CFURLRef>(copyUrl(bundle)).get());
}

}  // namespace

std::string MainBundleFolder() {
    return FolderOf(CFBundleCopyBundleURL);
}

std::string SupportFilesFolder() {
    return FolderOf(CFBundleCopySupportFilesDirectoryURL);
}

std::string BuiltInPlugInsFolder() {
    return FolderOf(CFBundleCopyBuiltInPlugInsURL);
}

std::string ResourcesFolder() {
    return FolderOf(CFBundleCopyResourcesDirectoryURL);
}

std::string MainBundleVersion() {
    const CancellationOff whole;
    const CFBundleRef bundle = CFBundleGetMainBundle();
    const CFTypeRef version =
        bundle == nullptr ? nullptr
                          : CFBundleGetValueForInfoDictionaryKey(bundle, kCFBundleVersionKey);
    return version != nullptr && CFGetTypeID(version) == CFStringGetTypeID()
               ? TextOf(static_cast<CFStringRef>(version))
               : std::string();
}

std::string ResourcesFolderOf(const std::string& path) {
    const CancellationOff whole;
    const Owned<CFURLRef> url(CreateFileUrl(path, true));
    const Owned<CFBundleRef> bundle(
        url == nullptr ? nullptr : CFBundleCreate(kCFAllocatorDefault, url.get()));
    return bundle == nullptr
               ? std::string()
               : PathOf(Owned<CFURLRef>(CFBundleCopyResourcesDirectoryURL(bundle.get())).get());
}

}  // namespace platform
