// Dates as people give them on the command line.
#pragma once

#include <cstdint>
#include <string>

namespace tallyquist {

// The first and last second that a text means in the local time zone, counted from 1970-01-01
// 00:00:00 UTC: a day for "2026-11-21", a minute for "2026-11-21 09:46", a second for "2026-11-21
// 09:46:54"; a "T" may stand for the blank.
struct DateRange {
    int64_t first;
    int64_t last;
};

// `option` names the option in the UsageError that a text which is no such date gives.
DateRange ParseDateArgument(const std::string& option, const std::string& text);

}  // namespace tallyquist
