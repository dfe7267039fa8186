// Typed cells against a slow reference: the C library's own conversion of each value.
#include "JobCostExporter/TypedCells.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstdlib>
#include <ctime>
#include <random>
#include <string>

#include "tests/support/Environment.h"

namespace {

std::string Reference(int64_t seconds) {
    const time_t t = seconds;
    struct tm local {};
    tzset();
    if (localtime_r(&t, &local) == nullptr) {
        local = {};
    }
    char text[TYPED_CELL_SIZE];
    std::snprintf(text, sizeof text, "%04d/%02d/%02d %02d:%02d:%02d",
                  static_cast<int>(static_cast<unsigned>(local.tm_year) + 1900U), local.tm_mon + 1,
                  local.tm_mday, local.tm_hour, local.tm_min, local.tm_sec);
    return text;
}

std::string Cell(DateTimeCells& cells, int64_t seconds) {
    char text[TYPED_CELL_SIZE];
    return {text, cells.Write(text, seconds)};
}

class ZoneTest : public testing::TestWithParam<const char*> {};

TEST_P(ZoneTest, DateTimesAreThoseOfTheCLibrary) {
    const ScopedVariable zone("TZ", GetParam());
    DateTimeCells cells;
    cells.Refresh();
    const auto check = [&](int64_t seconds) {
        ASSERT_EQ(Reference(seconds), Cell(cells, seconds)) << seconds;
    };
    // All changes of the offset from 1900 to 2100, found by steps of an hour, to the second.
    int64_t offset = 0;
    for (int64_t t = -2208988800; t < 4102444800; t += 3600) {
        const time_t moment = t;
        struct tm local {};
        localtime_r(&moment, &local);
        const int64_t present = timegm(&local) - t;
        if (present != offset) {
            for (int64_t near = t - 3605; near <= t + 5; ++near) {
                ASSERT_NO_FATAL_FAILURE(check(near));
            }
            offset = present;
        }
    }
    std::mt19937_64 random(7);
    for (int i = 0; i < 20'000; ++i) {
        const auto bits = static_cast<int>(random() % 63) + 1;
        const auto value = static_cast<int64_t>(random() >> (64 - bits));
        ASSERT_NO_FATAL_FAILURE(check(value));
        ASSERT_NO_FATAL_FAILURE(check(-value));
    }
    // The first and last second of the years 0000 and 9999, and of what the platform can convert.
    for (const int64_t edge : {-62167219200, 253402300800, 67768036191676800, -67768040609740800,
                               INT64_MAX / 2, INT64_MIN / 2}) {
        for (int64_t near = edge - 90000; near <= edge + 90000; near += 7499) {
            ASSERT_NO_FATAL_FAILURE(check(near));
        }
    }
    check(INT64_MIN);
    check(INT64_MAX);
}

INSTANTIATE_TEST_SUITE_P(
    Zones, ZoneTest,
    testing::Values("UTC", "", "Europe/Berlin", "America/New_York", "Asia/Kathmandu",
                    "Australia/Lord_Howe", "Africa/Casablanca", "Pacific/Apia", "Antarctica/Troll",
                    "America/Caracas", ":Europe/London", "right/Europe/Paris",
                    "right/Indian/Chagos", "No/Such_Zone", "CET-1CEST,M3.5.0,M10.5.0/3",
                    "XXX0YYY,J60/0,J60/2"));  // summer for one hour of the year

TEST(DateTimeCells, NoticeAChangedZoneVariable) {
    DateTimeCells cells;
    const std::string longName(300, 'x');
    const char* const names[] = {"Asia/Tokyo", "UTC", nullptr, longName.c_str(), "Asia/Tokyo", ""};
    for (const char* name : names) {
        const ScopedVariable zone("TZ", name);
        cells.Refresh();
        EXPECT_EQ(Reference(1795250919), Cell(cells, 1795250919)) << (name ? name : "unset");
    }
}

// Offsets that one handle remembers, and those that it learns later, are those of its own zone.
TEST(DateTimeCells, AreNotMixedUpByAnotherHandlesZone) {
    DateTimeCells first;
    DateTimeCells second;
    for (const int64_t seconds : {1500000000, 1600000000, 1700000000}) {
        for (DateTimeCells* cells : {&first, &second}) {
            const ScopedVariable zone("TZ", cells == &first ? "Europe/Berlin" : "Asia/Tokyo");
            cells->Refresh();
            const std::string cell = Cell(*cells, seconds);  // before Reference sets the zone
            EXPECT_EQ(Reference(seconds), cell);
        }
    }
}

TEST(ParseSeconds, ReadsWhatAtolReads) {
    constexpr const char* TEXTS[] = {
        "", "0", "-7", "+7", " \t\n42", "1234", "12345", "12345678", "123456789012345678",
        // At and beyond the range of the type.
        "999999999999999999", "1234567890123456789", "9223372036854775807", "9223372036854775808",
        "-9223372036854775808", "-99999999999999999999", "00000000000000000000012",
        // No plain numbers.
        "1795250919x", "12 3", "1.5", "-", "--1", "- 1", "x", "0x10"};
    for (const char* text : TEXTS) {
        EXPECT_EQ(std::atol(text), ParseSeconds(text)) << '"' << text << '"';
    }
}

}  // namespace
