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
    // library must be asked: in a zone with hand-written rules or leap seconds, or far from
    // today.
    bool FromOffset(int64_t t, int64_t* local) {
        const int64_t number = t >> BLOCK_BITS;
        if (m_blocks == nullptr || number <= NO_BLOCK || number > INT32_MAX) {
            return false;
        }
        Block& block = m_blocks[static_cast<uint64_t>(number) % SLOTS];
        if (block.number != number) {
            block = Learn(static_cast<int32_t>(number));
        }
        const int64_t within = t & (BLOCK_SIZE - 1);
        const int32_t offset = within < block.change ? block.before : block.after;
        *local = t + offset;
        return offset != UNKNOWN;
    }

private:
    // Blocks of about three days. The closest two changes in any installed zone lie 344,400 s
    // apart, so a block holds one change at the most, and none when its first and last second
    // agree.
    static constexpr int BLOCK_BITS = 18;
    static constexpr int64_t BLOCK_SIZE = int64_t{1} << BLOCK_BITS;
    static constexpr uint64_t SLOTS = 2048;  // 17 years of blocks in 32 KiB
    static constexpr int32_t NO_BLOCK = INT32_MIN;
    static constexpr int32_t UNKNOWN = INT32_MIN;

    struct Block {
        int32_t number = NO_BLOCK;
        int32_t change = 0;        // the first second of the block that has the offset `after`
        int32_t before = UNKNOWN;  // offsets in seconds
        int32_t after = UNKNOWN;
    };

    bool ZoneVariableChanged();
    static Block Learn(int32_t number);

    std::unique_ptr<Block[]> m_blocks;  // null: nothing can be remembered
    char m_zone[256] = {};              // copy of the zone variable, empty when it is unset
    bool m_zoneKnown = false;           // m_zone is the variable of the last Refresh
    time_t m_refreshed = -1;
};
