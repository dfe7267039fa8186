// Local time for very many instants: remembers the offset from UTC instead of asking the C library
// for every instant, which with no zone variable set looks at the zone file each time.
#pragma once

#include <cstdint>
#include <ctime>
#include <memory>

class LocalTime {
public:
    // Forgets everything when the zone variable has changed, and once a second when it is unset, so
    // that a changed zone file is seen. To be called before the conversions of a row.
    void Refresh();

    // Stores the local time at `t` (seconds since 1970-01-01 00:00:00 UTC), counted like a UTC
    // time: `t` plus the offset of that moment. False when no such offset is at hand and the C
    // library must be asked: near a change of the offset, in a zone given by hand-written rules, or
    // far from today.
    bool FromOffset(int64_t t, int64_t* local) {
        const int64_t block = t >> BLOCK_BITS;
        if (m_offsets == nullptr || block <= NO_BLOCK || block > INT32_MAX) {
            return false;
        }
        const Offset& slot = m_offsets[static_cast<uint64_t>(block) % SLOTS];
        const int32_t offset =
            slot.block == block ? slot.seconds : Learn(static_cast<int32_t>(block));
        *local = t + offset;
        return offset != UNKNOWN;
    }

private:
    // Blocks of about three days. The closest two changes in any installed zone lie 344,400 s
    // apart, so a block whose first and last second agree has one offset throughout.
    static constexpr int BLOCK_BITS = 18;
    static constexpr uint64_t SLOTS = 4096;  // 34 years of blocks in 32 KiB
    static constexpr int32_t NO_BLOCK = INT32_MIN;
    static constexpr int32_t UNKNOWN = INT32_MIN;

    struct Offset {
        int32_t block = NO_BLOCK;
        int32_t seconds = UNKNOWN;
    };

    bool ZoneVariableChanged();
    int32_t Learn(int32_t block);

    std::unique_ptr<Offset[]> m_offsets;  // null: nothing can be remembered
    char m_zone[256] = {};                // copy of the zone variable, empty when it is unset
    bool m_zoneKnown = false;             // m_zone is the variable of the last Refresh
    time_t m_refreshed = -1;
};
