#include "JobCostExporter/TypedCells.h"

#include <array>
#include <cstdlib>
#include <cstring>

#include "compatible/osFree.h"

namespace {

constexpr std::array<char, 200> MakeDigitPairs() {
    std::array<char, 200> pairs{};
    for (size_t i = 0; i < 100; ++i) {
        pairs[i * 2] = static_cast<char>('0' + i / 10);
        pairs[i * 2 + 1] = static_cast<char>('0' + i % 10);
    }
    return pairs;
}

constexpr std::array<char, 200> DIGIT_PAIRS = MakeDigitPairs();

// `number` is 0 to 99.
char* WritePair(char* out, unsigned number) {
    std::memcpy(out, &DIGIT_PAIRS[size_t{number} * 2], 2);
    return out + 2;
}

char* WritePairAfter(char* out, char separator, unsigned number) {
    *out = separator;
    return WritePair(out + 1, number);
}

char* WriteClock(char* out, unsigned secondOfDay) {
    out = WritePair(out, secondOfDay / 3600);
    out = WritePairAfter(out, ':', secondOfDay / 60 % 60);
    return WritePairAfter(out, ':', secondOfDay % 60);
}

constexpr int64_t SECONDS_PER_DAY = 86400;
constexpr int64_t DAYS_PER_ERA = 146097;  // of 400 Gregorian years

// Days from 0000-03-01 to 1970-01-01. A year that begins in March has its leap day at the end.
constexpr int64_t EPOCH_DAYS = 719468;

// Local times of the years 0000 to 9999, whose numbers have four digits.
constexpr int64_t FIRST_PLAIN = -62167219200;
constexpr int64_t LAST_PLAIN = 253402300799;

// The proleptic Gregorian calendar by whole-number arithmetic (era, year, day of the year).
char* WriteDate(char* out, int64_t daysSinceEpoch) {
    // One era more keeps the first months of the year 0 from being negative.
    const auto days = static_cast<uint32_t>(daysSinceEpoch + EPOCH_DAYS + DAYS_PER_ERA);
    const uint32_t era = days / DAYS_PER_ERA;
    const uint32_t dayOfEra = days % DAYS_PER_ERA;
    const uint32_t yearOfEra =
        (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    const uint32_t dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const uint32_t marchMonth = (5 * dayOfYear + 2) / 153;
    const uint32_t day = dayOfYear - (153 * marchMonth + 2) / 5 + 1;
    const uint32_t month = marchMonth < 10 ? marchMonth + 3 : marchMonth - 9;
    const uint32_t year = yearOfEra + era * 400 - 400 + (month <= 2 ? 1 : 0);
    out = WritePair(out, year / 100);
    out = WritePair(out, year % 100);
    out = WritePairAfter(out, '/', month);
    return WritePairAfter(out, '/', day);
}

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

char* WriteDateTime(char* out, int64_t seconds, LocalTime& zone) {
    int64_t local = 0;
    if (!zone.FromOffset(seconds, &local) || local < FIRST_PLAIN || local > LAST_PLAIN) {
        return PrintDateTime(out, seconds);
    }
    // Counted from the first plain day, so that the division rounds down before 1970 too.
    const auto sinceFirst = static_cast<uint64_t>(local - FIRST_PLAIN);
    const auto day = static_cast<int64_t>(sinceFirst / SECONDS_PER_DAY);
    out = WriteDate(out, day + FIRST_PLAIN / SECONDS_PER_DAY);
    *out = ' ';
    return WriteClock(out + 1, static_cast<unsigned>(sinceFirst % SECONDS_PER_DAY));
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
