// The preferences of MacUtility.h.
#include <cstdlib>
#include <exception>
#include <string_view>

#include "CostCountCommon/include/MacUtility.h"
#include "CostCountCommon/src/platform/Platform.h"

namespace {

constexpr const char* ERROR_LOG_CONFIRM_TIME = "ErrorLogConfirmTime";

bool IsPreference(const char* key) {
    return key != nullptr && std::string_view(key) == ERROR_LOG_CONFIRM_TIME;
}

}  // namespace

void SetPreferenceValue(const char* key, const char* value) try {
    if (IsPreference(key) && value != nullptr) {
        // As atol reads it, but with a defined result for a number that is too large.
        platform::SetPreferenceNumber(key, std::strtoll(value, nullptr, 10));
    }
} catch (const std::exception&) {
    return;  // out of memory: the earlier value stands
}

void GetPreferenceValue(const char* key, std::string& value) try {
    const bool isPreference = IsPreference(key);
    value.clear();
    if (isPreference) {
        // The constant, not `key`, which may be what `value` was.
        if (const auto number = platform::PreferenceNumber(ERROR_LOG_CONFIRM_TIME)) {
            value = std::to_string(*number);
        }
    }
} catch (const std::exception&) {
    value.clear();  // out of memory
}

unsigned int IsValidPreferenceKey(const char* key, unsigned int* valid) {
    const unsigned int result = IsPreference(key) ? 1 : 0;
    if (valid != nullptr) {
        *valid = result;
    }
    return result;
}
