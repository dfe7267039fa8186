#include "host/export/DateArgument.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <ctime>
#include <tuple>

#include "host/common/Errors.h"
#include "host/common/Printable.h"

namespace tallyquist {
namespace {

struct Form {
    const char* pattern;
    int tm::*smallest;  // the part that the range covers one of
};

constexpr std::array<Form, 5> FORMS{{
    {"%Y-%m-%d", &tm::tm_mday},
    {"%Y-%m-%d %H:%M", &tm::tm_min},
    {"%Y-%m-%dT%H:%M", &tm::tm_min},
    {"%Y-%m-%d %H:%M:%S", &tm::tm_sec},
    {"%Y-%m-%dT%H:%M:%S", &tm::tm_sec},
}};

auto Fields(const struct tm& t) {
    return std::tuple(t.tm_year, t.tm_mon, t.tm_mday, t.tm_hour, t.tm_min, t.tm_sec);
}

struct tm Local(time_t t) {
    struct tm local {};
    localtime_r(&t, &local);
    return local;
}

// What the clock that shows `wanted` may mean. It shows a time twice when it was set back and not
// at all when it was set forward; then `earliest` is the first moment after the gap and `latest`
// the last one before it.
struct Moments {
    time_t earliest;
    time_t latest;
};

Moments MomentsOf(const struct tm& wanted) {
    std::array<time_t, 2> candidates{};
    for (const int summer : {0, 1}) {
        struct tm asked = wanted;
        asked.tm_isdst = summer;
        candidates[static_cast<size_t>(summer)] = mktime(&asked);
    }
    auto [before, after] = std::minmax({candidates[0], candidates[1]});
    const bool beforeShowsIt = Fields(Local(before)) == Fields(wanted);
    const bool afterShowsIt = Fields(Local(after)) == Fields(wanted);
    if (beforeShowsIt || afterShowsIt) {
        return {beforeShowsIt ? before : after, afterShowsIt ? after : before};
    }
    while (after - before > 1) {
        const time_t middle = before + (after - before) / 2;
        (Fields(Local(middle)) < Fields(wanted) ? before : after) = middle;
    }
    return {after, before};
}

bool IsRealDay(struct tm day) {
    const int dayOfMonth = day.tm_mday;
    day.tm_hour = 12;  // no zone leaves out noon
    day.tm_isdst = -1;
    return mktime(&day) != -1 && day.tm_mday == dayOfMonth;
}

// The last second of the day, minute or second that begins at `first`.
struct tm LastSecond(struct tm first, int tm::*smallest) {
    if (smallest == &tm::tm_mday) {
        first.tm_hour = 23;
        first.tm_min = 59;
    }
    if (smallest != &tm::tm_sec) {
        first.tm_sec = 59;
    }
    return first;
}

}  // namespace

DateRange ParseDateArgument(const std::string& option, const std::string& text) {
    // strptime would take 26 for the year 26.
    const bool fourDigits = text.size() > 4 && text[4] == '-' &&
                            std::all_of(text.begin(), text.begin() + 4,
                                        [](unsigned char c) { return std::isdigit(c) != 0; });
    for (const Form& form : FORMS) {
        struct tm local {};
        const char* end = fourDigits ? strptime(text.c_str(), form.pattern, &local) : nullptr;
        if (end != nullptr && *end == '\0' && IsRealDay(local)) {
            return {MomentsOf(local).earliest, MomentsOf(LastSecond(local, form.smallest)).latest};
        }
    }
    throw UsageError(option + ": " + Printable(text) +
                     " is not a date such as 2026-11-21 or 2026-11-21 09:46");
}

}  // namespace tallyquist
