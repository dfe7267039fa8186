#include "host/export/DateArgument.h"

#include <gtest/gtest.h>

#include "host/common/Errors.h"
#include "host/export/TimeZone.h"
#include "tests/support/Environment.h"

namespace tallyquist {
namespace {

TEST(DateArgument, MeansAWholeDayMinuteOrSecondOfLocalTime) {
    const ScopedVariable zone("TZ", "Europe/Berlin");
    struct {
        const char* text;
        int64_t first;
        int64_t last;
    } const CASES[] = {
        {"1970-01-01", -3600, 82799},
        {"2026-03-29", 1774738800,
         1774738800 + 23 * 3600 - 1},  // the clock goes forward that night
        {"2026-10-25", 1792879200, 1792879200 + 25 * 3600 - 1},  // and back
        {"1970-01-01 01:00", 0, 59},
        {"1970-01-01T01:00:07", 7, 7},
        {"2024-02-29", 1709161200, 1709161200 + 86399},
        // Set forward from 2:00 to 3:00: what the clock never shows ends before it begins.
        {"2026-03-29 02:30", 1774746000, 1774745999},
        // Set back from 3:00 to 2:00: what it shows twice reaches from the first to the second.
        {"2026-10-25 02:30:00", 1792888200, 1792891800},
    };
    for (const auto& expected : CASES) {
        const DateRange range = ParseDateArgument("--from", expected.text);
        EXPECT_EQ(expected.first, range.first) << expected.text;
        EXPECT_EQ(expected.last, range.last) << expected.text;
    }
}

TEST(DateArgument, RefusesWhatIsNoDate) {
    for (const char* text : {"", "today", "2026-13-01", "2026-02-30", "2025-02-29", "2026-11-21x",
                             "2026-11-21 25:00", "21.11.2026", "26-11-21", "+026-11-21"}) {
        EXPECT_THROW(ParseDateArgument("--from", text), UsageError) << text;
    }
}

TEST(TimeZone, RefusesWhatTheCLibraryWouldTakeForUtc) {
    const ScopedVariable zone("TZ", nullptr);
    for (const char* known :
         {"UTC", "Europe/Berlin", "CET-1CEST,M3.5.0,M10.5.0/3", "JST-9", "<+0330>-3:30"}) {
        EXPECT_NO_THROW(UseTimeZone(known)) << known;
    }
    for (const char* unknown : {"", "UTC+2", "GMT-5", "zone.tab", "../../../etc/passwd", "Berlin",
                                "Europe/Nowhere", "Europe", "CET-1CEST,M3.5.0"}) {
        EXPECT_THROW(UseTimeZone(unknown), UsageError) << unknown;
    }
}

}  // namespace
}  // namespace tallyquist
