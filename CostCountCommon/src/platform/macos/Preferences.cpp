// Preferences of the current user for this application, on any host.
#include <CoreFoundation/CoreFoundation.h>

#include "CostCountCommon/src/platform/Platform.h"
#include "CostCountCommon/src/platform/macos/CoreFoundationOwner.h"

namespace platform {

std::optional<int64_t> PreferenceNumber(const char* key) {
    const Owned<CFStringRef> name(CreateString(key));
    const Owned<CFPropertyListRef> value(
        name == nullptr ? nullptr
                        : CFPreferencesCopyValue(name.get(), kCFPreferencesCurrentApplication,
                                                 kCFPreferencesCurrentUser, kCFPreferencesAnyHost));
    int64_t number = 0;
    return value != nullptr && CFGetTypeID(value.get()) == CFNumberGetTypeID() &&
                   CFNumberGetValue(static_cast<CFNumberRef>(value.get()), kCFNumberSInt64Type,
                                    &number) != 0
               ? std::optional(number)
               : std::nullopt;
}

void SetPreferenceNumber(const char* key, int64_t value) {
    const Owned<CFStringRef> name(CreateString(key));
    const Owned<CFNumberRef> number(
        CFNumberCreate(kCFAllocatorDefault, kCFNumberSInt64Type, &value));
    if (name == nullptr || number == nullptr) {
        return;
    }
    CFPreferencesSetValue(name.get(), number.get(), kCFPreferencesCurrentApplication,
                          kCFPreferencesCurrentUser, kCFPreferencesAnyHost);
    CFPreferencesSynchronize(kCFPreferencesCurrentApplication, kCFPreferencesCurrentUser,
                             kCFPreferencesAnyHost);
}

}  // namespace platform
