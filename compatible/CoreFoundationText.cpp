#include <exception>

#include "CostCountCommon/src/platform/Platform.h"
#include "compatible/osFree.h"

CFStringRef CreateCFString(const char* text) {
    return text != nullptr ? platform::CreateString(text) : nullptr;
}

void CFStringToUstring(CFStringRef s, std::string* out) try {
    if (s != nullptr && out != nullptr) {
        *out = platform::TextOf(s);
    }
} catch (const std::exception&) {
    return;  // out of memory
}
