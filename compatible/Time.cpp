#include <cerrno>
#include <ctime>

#include "compatible/osFree.h"

int localtime_s(struct tm* out, const time_t* t) {
    if (out == nullptr || t == nullptr) {
        errno = EINVAL;
        return EINVAL;
    }
    // localtime_r alone need not look at the zone variable again after the first call.
    tzset();
    struct tm broken {};
    if (localtime_r(t, &broken) == nullptr) {
        errno = EINVAL;
        return EINVAL;
    }
    *out = broken;
    errno = 0;
    return 0;
}
