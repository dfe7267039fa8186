#include <cerrno>
#include <cstdint>
#include <ctime>

#include "CostCountCommon/src/platform/Platform.h"
#include "compatible/osFree.h"

namespace {

using BreakDown = struct tm* (*)(const time_t* t, struct tm* out);

// False, with `*out` as it was, when the year does not fit. The C library may have filled a part of
// its record by then, and has set errno.
bool Store(BreakDown breakDown, const time_t* t, struct tm* out) {
    struct tm broken {};
    if (breakDown(t, &broken) == nullptr) {
        return false;
    }
    *out = broken;
    return true;
}

}  // namespace

int localtime_s(struct tm* out, const time_t* t) {
    // localtime_r alone need not look at the zone variable again after the first call.
    tzset();
    errno = out != nullptr && t != nullptr && Store(localtime_r, t, out) ? 0 : EINVAL;
    return errno;
}

int gmtimeMac(struct tm* out, const time_t* t) {
    const int earlierError = errno;
    const bool stored = out != nullptr && t != nullptr && *t >= 0 && Store(gmtime_r, t, out);
    errno = earlierError;
    return stored ? 0 : EINVAL;
}

int GetSecondsFromGMT() {
    return platform::SecondsFromGmt();
}

void Sleep(unsigned int ms) {
    if (ms == 0) {
        return;
    }
    // Microseconds in 32 bits are the contract, and so is their wrapping around.
    const uint32_t microseconds = ms * uint32_t{1000};
    struct timespec rest {};
    rest.tv_sec = static_cast<time_t>(microseconds / 1000000);
    rest.tv_nsec = static_cast<long>(microseconds % 1000000) * 1000;
    while (nanosleep(&rest, &rest) != 0 && errno == EINTR) {
    }
}
