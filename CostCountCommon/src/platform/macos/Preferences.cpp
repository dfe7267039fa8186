// Preferences of the current user for this application, on any host.
#include <CoreFoundation/CoreFoundation.h>

#include "CostCountCommon/src/CancellationOff.h"
#include "CostCountCommon/src/platform/Platform.h"
#include "CostCountCommon/src/platform/macos/CoreFoundationOwner.h"

namespace platform {

std::optional<int64_t> PreferenceNumber(const char* key) {
    const CancellationOff whole;
    const Owned<CFStringRef> name(CreateString(key));
    const Owned<CFPropertyListRef> value(
        name == nullptr ? nullptr
                        : CFPreferencesCopyValue(name.get(), kCFPreferencesCurrentApplication,
                                                 kCFPreferencesCurrentUser, kCFPreferencesAnyHost));
    if (value == nullptr || CFGetTypeID(value.get()) != CFNumberGetTypeID()) {
        return std::nullopt;
    }
    int64_t number = 0;
    // Its result tells only whether the number was whole; it is stored in either case.
    CFNumberGetValue(static_cast<CFNumberRef>(value.get()), kCFNumberSInt64Type, &number);
    return number;
}

void SetPreferenceNumber(const char* key, int64_t value) {
    const CancellationOff whole;
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
