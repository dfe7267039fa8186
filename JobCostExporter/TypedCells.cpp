#include "JobCostExporter/TypedCells.h"

#include <cstdlib>

#include "JobCostExporter/DigitPairs.h"
#include "compatible/osFree.h"

namespace {

char* WriteClock(char* out, unsigned secondOfDay) {
    out = WritePair(out, secondOfDay / 3600);
    out = WritePairAfter(out, ':', secondOfDay / 60 % 60);
    return WritePairAfter(out, ':', secondOfDay % 60);
}

constexpr int64_t SECONDS_PER_DAY = 86400;

// Local times of the years 0000 to 9999, whose numbers have four digits.
constexpr int64_t FIRST_PLAIN = CalendarDays::FIRST * SECONDS_PER_DAY;
constexpr int64_t LAST_PLAIN = CalendarDays::LAST * SECONDS_PER_DAY + SECONDS_PER_DAY - 1;

char* PrintDateTime(char* out, int64_t seconds) {
    struct tm local {};
    const time_t t = seconds;
    if (localtime_s(&local, &t) != 0) {
        local = {};
    }
    // Unsigned, because the last years of the platform's range exceed an int by the 1900 added.
    const auto year = static_cast<int>(static_cast<unsigned>(local.tm_year) + 1900U);
    return out + sprintf_s(out, TYPED_CELL_SIZE, "%04d/%02d/%02d %02d:%02d:%02d", year,
                           local.tm_mon + 1, local.tm_mday, local.tm_hour, local.tm_min,
                           local.tm_sec);
}

bool IsDigit(char character) {
    return character >= '0' && character <= '9';
}

}  // namespace

int64_t ParseSeconds(const char* text) {
    constexpr ptrdiff_t SAFE_DIGITS = 18;  // any number of so many digits fits in 64 bits
    const char* digits = *text == '-' ? text + 1 : text;
    const char* at = digits;
    int64_t number = 0;
    // Four at a time: the products do not wait for each other. No byte after the terminator is
    // read.
    for (; IsDigit(at[0]) && IsDigit(at[1]) && IsDigit(at[2]) && IsDigit(at[3]); at += 4) {
        if (at - digits > SAFE_DIGITS - 4) {
            return std::atol(text);
        }
        number = number * 10000 + (at[0] - '0') * 1000 + (at[1] - '0') * 100 + (at[2] - '0') * 10 +
                 (at[3] - '0');
    }
    for (; IsDigit(*at); ++at) {
        if (at - digits >= SAFE_DIGITS) {
            return std::atol(text);
        }
        number = number * 10 + (*at - '0');
    }
    if (at == digits) {
        return std::atol(text);  // white space or a plus sign first, or no number at all
    }
    return digits == text ? number : -number;
}

char* DateTimeCells::Write(char* out, int64_t seconds) {
    int64_t local = 0;
    if (!m_zone.FromOffset(seconds, &local) || local < FIRST_PLAIN || local > LAST_PLAIN) {
        return PrintDateTime(out, seconds);
    }
    // Counted from the first plain day, so that the division rounds down before 1970 too.
    const auto sinceFirst = static_cast<uint64_t>(local - FIRST_PLAIN);
    const auto day = static_cast<int64_t>(sinceFirst / SECONDS_PER_DAY) + CalendarDays::FIRST;
    return WriteClock(m_days.WriteDate(out, day),
                      static_cast<unsigned>(sinceFirst % SECONDS_PER_DAY));
}

void DateTimeCells::Refresh() {
    m_zone.Refresh();
    m_days.Prepare();
}

char* WriteTimeSpan(char* out, int64_t seconds) {
    if (seconds >= 0 && seconds < 100 * 3600) {
        return WriteClock(out, static_cast<unsigned>(seconds));
    }
    const int64_t hours = seconds / 3600;
    const int64_t minutes = (seconds - hours * 3600) / 60;
    const int64_t rest = seconds - seconds / 60 * 60;
    return out + sprintf_s(out, TYPED_CELL_SIZE, "%02d:%02d:%02d", static_cast<int>(hours),
                           static_cast<int>(minutes), static_cast<int>(rest));
}
