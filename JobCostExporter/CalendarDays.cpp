#include "JobCostExporter/CalendarDays.h"

#include <new>

#include "JobCostExporter/DigitPairs.h"

namespace {

constexpr int64_t DAYS_PER_ERA = 146097;  // of 400 Gregorian years

// Days from 0000-03-01 to 1970-01-01. A year that begins in March has its leap day at the end.
constexpr int64_t EPOCH_DAYS = 719468;

}  // namespace

void CalendarDays::Prepare() {
    if (m_days == nullptr) {
        m_days.reset(new (std::nothrow) Day[SLOTS]);
    }
}

// The proleptic Gregorian calendar by whole-number arithmetic: era, year of the era, day of the
// year.
char* CalendarDays::WorkOut(char* out, int64_t day) {
    // One era more keeps the first months of the year 0 from being negative.
    const auto days = static_cast<uint32_t>(day + EPOCH_DAYS + DAYS_PER_ERA);
    const uint32_t era = days / DAYS_PER_ERA;
    const uint32_t dayOfEra = days % DAYS_PER_ERA;
    const uint32_t yearOfEra =
        (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    const uint32_t dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const uint32_t marchMonth = (5 * dayOfYear + 2) / 153;
    const uint32_t dayOfMonth = dayOfYear - (153 * marchMonth + 2) / 5 + 1;
    const uint32_t month = marchMonth < 10 ? marchMonth + 3 : marchMonth - 9;
    const uint32_t year = yearOfEra + era * 400 - 400 + (month <= 2 ? 1 : 0);
    out = WritePair(out, year / 100);
    out = WritePair(out, year % 100);
    out = WritePairAfter(out, '/', month);
    out = WritePairAfter(out, '/', dayOfMonth);
    *out++ = ' ';
    return out;
}
