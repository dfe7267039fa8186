// Texts of the main bundle in the user's language.
#include <CoreFoundation/CoreFoundation.h>

#include "CostCountCommon/src/CancellationOff.h"
#include "CostCountCommon/src/platform/Platform.h"
#include "CostCountCommon/src/platform/macos/CoreFoundationOwner.h"

namespace platform {
namespace {

// No translation is this text. Asked for without a default, a missing key answers with itself. It
// has no letters: a setting for developers turns those of missing texts into capitals.
constexpr const char* MISSING = "\x01\x02\x01";

}  // namespace

std::optional<std::string> LocalizedString(const char* key) {
    const CancellationOff whole;
    const CFBundleRef bundle = CFBundleGetMainBundle();
    const Owned<CFStringRef> name(CreateString(key));
    const Owned<CFStringRef> missing(CreateString(MISSING));
    if (bundle == nullptr || name == nullptr || missing == nullptr) {
        return std::nullopt;
    }
    const Owned<CFStringRef> found(
        CFBundleCopyLocalizedString(bundle, name.get(), missing.get(), nullptr));
    return found == nullptr || CFStringCompare(found.get(), missing.get(),
                                               CFStringCompareFlags{}) == kCFCompareEqualTo
               ? std::nullopt
               : std::optional(TextOf(found.get()));
}

int LocalizationsCount() {
    const CancellationOff whole;
    const CFBundleRef bundle = CFBundleGetMainBundle();
    const Owned<CFArrayRef> languages(bundle == nullptr ? nullptr
                                                        : CFBundleCopyBundleLocalizations(bundle));
    return languages == nullptr ? 0 : static_cast<int>(CFArrayGetCount(languages.get()));
}

}  // namespace platform
