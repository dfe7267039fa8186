#include <ctime>

#include "CostCountCommon/src/platform/Platform.h"

int platform::SecondsFromGmt() {
    // localtime_r alone need not look at the zone variable again after the first call.
    tzset();
    const time_t now = time(nullptr);
    struct tm broken {};
    return localtime_r(&now, &broken) != nullptr ? static_cast<int>(broken.tm_gmtoff) : 0;
}
