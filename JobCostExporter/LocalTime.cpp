#include "JobCostExporter/LocalTime.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>

namespace {

// The offset at `t`, or nothing (false) when local time is not `t` plus a whole offset there: the C
// library fails, or a zone that counts leap seconds is within one.
bool OffsetAt(time_t t, int64_t* offset) {
    struct tm local {};
    if (localtime_r(&t, &local) == nullptr || local.tm_sec > 59) {
        return false;
    }
    *offset = timegm(&local) - t;
    return true;
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
    // likes.
    if (!m_zoneKnown || std::strchr(m_zone, ',') != nullptr) {
        m_offsets.reset();
        return;
    }
    if (m_offsets == nullptr) {
        m_offsets.reset(new (std::nothrow) Offset[SLOTS]);
    } else {
        std::fill_n(m_offsets.get(), SLOTS, Offset());
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

int32_t LocalTime::Learn(int32_t block) {
    const int64_t first = static_cast<int64_t>(block) << BLOCK_BITS;
    const int64_t last = first + (int64_t{1} << BLOCK_BITS) - 1;
    int64_t atFirst = 0;
    int64_t atLast = 0;
    const bool constant = OffsetAt(first, &atFirst) && OffsetAt(last, &atLast) && atFirst == atLast;
    Offset& slot = m_offsets[static_cast<uint64_t>(static_cast<int64_t>(block)) % SLOTS];
    slot = {block, constant ? static_cast<int32_t>(atFirst) : UNKNOWN};
    return slot.seconds;
}
