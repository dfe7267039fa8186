#include <gtest/gtest.h>
#include <sys/time.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdint>

#include "compatible/osFree.h"
#include "tests/support/Environment.h"

namespace {

TEST(LocalTime, FollowsTheZoneVariable) {
    const time_t leapDay = 951868799;  // 2000-02-29 23:59:59 UTC
    for (const auto& [name, seconds] :
         {std::pair("Asia/Tokyo", 32400), std::pair("UTC", 0), std::pair("Asia/Kolkata", 19800),
          std::pair("<-03>3", -10800)}) {
        const ScopedVariable zone("TZ", name);
        struct tm local {};
        struct tm utc {};
        EXPECT_EQ(0, localtime_s(&local, &leapDay));
        EXPECT_EQ(0, gmtimeMac(&utc, &leapDay));
        EXPECT_EQ(leapDay + seconds, timegm(&local)) << name;
        EXPECT_EQ(leapDay, timegm(&utc)) << name;
        EXPECT_EQ(seconds, GetSecondsFromGMT()) << name;
    }
}

TEST(LocalTime, RefusesNullAndWhatDoesNotFit) {
    const time_t epoch = 0;
    const time_t before = -1;
    const time_t never = INT64_MAX;
    struct tm broken {};
    broken.tm_year = 7;
    for (const auto& [out, t] : {std::pair<struct tm*, const time_t*>(nullptr, &epoch),
                                 std::pair<struct tm*, const time_t*>(&broken, nullptr),
                                 std::pair<struct tm*, const time_t*>(&broken, &never)}) {
        errno = EIO;
        EXPECT_EQ(EINVAL, gmtimeMac(out, t));
        EXPECT_EQ(EIO, errno);
        EXPECT_EQ(EINVAL, localtime_s(out, t));
        EXPECT_EQ(EINVAL, errno);
    }
    EXPECT_EQ(EINVAL, gmtimeMac(&broken, &before));
    EXPECT_EQ(7, broken.tm_year);
    EXPECT_EQ(0, localtime_s(&broken, &before));
    EXPECT_EQ(0, errno);
}

TEST(Sleeping, GoesOnAfterASignal) {
    using std::chrono::steady_clock;
    std::signal(SIGALRM, [](int) {});
    const itimerval everyMillisecond{{0, 1000}, {0, 1000}};
    const itimerval never{};
    const auto start = steady_clock::now();
    setitimer(ITIMER_REAL, &everyMillisecond, nullptr);
    Sleep(50);
    setitimer(ITIMER_REAL, &never, nullptr);
    EXPECT_GE(steady_clock::now() - start, std::chrono::milliseconds(50));
}

TEST(Sleeping, WrapsAroundAtThirtyTwoBits) {
    const auto start = std::chrono::steady_clock::now();
    alarm(60);         // kills the test rather than let it sleep for more than an hour
    Sleep(4294968);    // 704 microseconds
    Sleep(536870912);  // none at all: the product is a multiple of 2 to the 32
    alarm(0);
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::microseconds(704));
}

}  // namespace
