#include "JobCostExporter/LocalTime.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>

namespace {

constexpr int64_t FloorDivide(int64_t a, int64_t b) {
    return a / b - (a % b < 0 ? 1 : 0);
}

// Seconds since 1970 of a broken-down time, 86,400 a day. timegm would count the leap seconds of a
// zone that has them.
int64_t CountedLikeUtc(const struct tm& broken) {
    const int64_t year = int64_t{broken.tm_year} + 1899;  // full years before it since the year 1
    const int64_t leapDays = FloorDivide(year, 4) - FloorDivide(year, 100) + FloorDivide(year, 400);
    const int64_t days = (year - 1969) * 365 + leapDays - 477 + broken.tm_yday;  // 477 until 1970
    return ((days * 24 + broken.tm_hour) * 60 + broken.tm_min) * 60 + broken.tm_sec;
}

// The offset at `t`; false when the C library fails.
bool OffsetAt(time_t t, int64_t* offset) {
    struct tm local {};
    if (localtime_r(&t, &local) == nullptr) {
        return false;
    }
    *offset = CountedLikeUtc(local) - t;
    return true;
}

// Whether the zone in use counts leap seconds. In such a zone even UTC is not what POSIX counts.
bool CountsLeapSeconds() {
    const time_t afterMany = 1500000000;
    struct tm utc {};
    return gmtime_r(&afterMany, &utc) == nullptr || CountedLikeUtc(utc) != afterMany;
}

}  // namespace

void LocalTime::Refresh() {
    bool stale = ZoneVariableChanged();
    if (m_zone[0] == '\0') {
        const time_t now = time(nullptr);
        stale = stale || now != m_refreshed;
        m_refreshed = now;
    }
    if (!stale) {
        return;
    }
    tzset();
    // A rule written by hand ("CET-1CEST,M3.5.0,M10.5.0/3") may change the offset as often as it
    // likes, and so does a zone that counts leap seconds.
    if (!m_zoneKnown || std::strchr(m_zone, ',') != nullptr || CountsLeapSeconds()) {
        m_blocks.reset();
        return;
    }
    if (m_blocks == nullptr) {
        m_blocks.reset(new (std::nothrow) Block[SLOTS]);
    } else {
        std::fill_n(m_blocks.get(), SLOTS, Block());
    }
}

// A set but empty variable means UTC and is told from an unset one by m_zone holding a blank.
bool LocalTime::ZoneVariableChanged() {
    const char* variable = std::getenv("TZ");
    const char* zone = variable == nullptr ? "" : *variable == '\0' ? " " : variable;
    if (m_zoneKnown && std::strcmp(zone, m_zone) == 0) {
        return false;
    }
    const size_t length = std::strlen(zone);
    m_zoneKnown = length < sizeof m_zone;  // a longer one is looked at anew for each row
    std::memcpy(m_zone, m_zoneKnown ? zone : "?", m_zoneKnown ? length + 1 : 2);
    return true;
}

LocalTime::Block LocalTime::Learn(int32_t number) {
    // Others in the process may have used another zone since the last Refresh.
    tzset();
    const int64_t start = static_cast<int64_t>(number) << BLOCK_BITS;
    const Block unknown{number, 0, UNKNOWN, UNKNOWN};
    int64_t before = 0;
    int64_t after = 0;
    if (!OffsetAt(start, &before) || !OffsetAt(start + BLOCK_SIZE - 1, &after)) {
        return unknown;
    }
    int64_t last = 0;  // known to have the offset `before`
    int64_t change = before == after ? last + 1 : BLOCK_SIZE - 1;
    while (change - last > 1) {
        const int64_t middle = last + (change - last) / 2;
        int64_t offset = 0;
        if (!OffsetAt(start + middle, &offset)) {
            return unknown;
        }
        (offset == before ? last : change) = middle;
    }
    return {number, static_cast<int32_t>(change), static_cast<int32_t>(before),
            static_cast<int32_t>(after)};
}
