#include <gtest/gtest.h>

#include <cerrno>
#include <climits>
#include <cstdint>

#include "compatible/osFree.h"
#include "tests/support/Environment.h"

namespace {

TEST(LocalTimeShim, FollowsTheZoneVariable) {
    const time_t epoch = 0;
    struct tm broken {};
    for (const auto& [name, hour] :
         {std::pair("Asia/Tokyo", 9), std::pair("UTC", 0), std::pair("Asia/Kolkata", 5)}) {
        const ScopedVariable zone("TZ", name);
        errno = EIO;
        EXPECT_EQ(0, localtime_s(&broken, &epoch));
        EXPECT_EQ(0, errno);
        EXPECT_EQ(hour, broken.tm_hour) << name;
        EXPECT_EQ(70, broken.tm_year);
    }
}

TEST(LocalTimeShim, RefusesNullAndWhatDoesNotFit) {
    const time_t epoch = 0;
    const time_t never = INT64_MAX;
    struct tm broken {};
    broken.tm_year = 7;
    for (const auto& [out, t] : {std::pair<struct tm*, const time_t*>(nullptr, &epoch),
                                 std::pair<struct tm*, const time_t*>(&broken, nullptr),
                                 std::pair<struct tm*, const time_t*>(&broken, &never)}) {
        errno = 0;
        EXPECT_EQ(EINVAL, localtime_s(out, t));
        EXPECT_EQ(EINVAL, errno);
        EXPECT_EQ(7, broken.tm_year);
    }
}

}  // namespace
