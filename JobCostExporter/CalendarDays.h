// Dates as text, remembered by day: the rows of a log fall on few days, and looking one up costs a
// fraction of working it out.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>

class CalendarDays {
public:
    // What WriteDate writes, its blank included.
    static constexpr size_t SIZE = 11;

    // The days of the years 0000 to 9999, counted from 1970-01-01.
    static constexpr int64_t FIRST = -719528;
    static constexpr int64_t LAST = 2932896;

    // Makes room to remember dates in. Without it, when memory is exhausted, each is worked out.
    void Prepare();

    // Writes "YYYY/MM/DD " for a day from FIRST to LAST at `out` and returns its end.
    char* WriteDate(char* out, int64_t day) {
        if (m_days == nullptr) {
            return WorkOut(out, day);
        }
        Day& slot = m_days[static_cast<uint64_t>(day) % SLOTS];
        if (slot.number != day) {
            slot.number = static_cast<int32_t>(day);
            WorkOut(slot.text, day);
        }
        std::memcpy(out, slot.text, SIZE);
        return out + SIZE;
    }

private:
    static constexpr uint64_t SLOTS = 1024;
    static constexpr int32_t NO_DAY = INT32_MIN;

    struct Day {
        int32_t number = NO_DAY;
        char text[SIZE + 1] = {};
    };

    static char* WorkOut(char* out, int64_t day);

    std::unique_ptr<Day[]> m_days;
};
