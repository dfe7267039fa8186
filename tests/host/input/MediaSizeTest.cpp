#include "host/input/MediaSize.h"

#include <gtest/gtest.h>

#include <string>

#include "host/input/LogTime.h"

namespace tallyquist {
namespace {

std::string SizeOf(const std::string& name) {
    const std::optional<MediaSize> size = ResolveMedia(name);
    return size ? FormatMillimetres(size->width) + "x" + FormatMillimetres(size->height) : "none";
}

TEST(MediaSize, Names) {
    const struct {
        const char* name;
        const char* size;
    } CASES[] = {
        // Self-describing.
        {"iso_a4_210x297mm", "210x297"},
        {"na_letter_8.5x11in", "215.9x279.4"},
        {"na_index-4x6_4x6in", "101.6x152.4"},
        {"na_number-9_3.875x8.875in", "98.425x225.425"},
        {"custom_max_1117.6x5000mm", "1117.6x5000"},
        {"iso_a4_210x297", "none"},
        {"iso_a4_210x-297mm", "none"},
        {"a4_210x297mm", "none"},
        {"x_y_1e3x1e3mm", "none"},
        {"x_y_0x0mm", "none"},
        {"x_y_99999999999999999999x1mm", "none"},
        // Custom.
        {"Custom.300x900mm", "300x900"},
        {"Custom.24x36in", "609.6x914.4"},
        {"Custom.612x792", "215.9x279.4"},
        {"Custom.612x792pt", "215.9x279.4"},
        {"Custom.1x2ft", "304.8x609.6"},
        {"Custom.10x15cm", "100x150"},
        {"Custom.0.5x1m", "500x1000"},
        {"Custom.4x6yd", "none"},
        {"Custom.", "none"},
        {"Custom.x", "none"},
        // In points.
        {"w288h432", "101.6x152.4"},
        {"w288h", "none"},
        // Short names.
        {"A4", "210x297"},
        {"a4", "210x297"},
        {"A0", "841x1189"},
        {"A10", "26x37"},
        {"A11", "none"},
        {"A4Small", "210x297"},
        {"A4.Borderless", "210x297"},
        {"iso-a4", "210x297"},
        {"B5", "182x257"},
        {"JISB5", "182x257"},
        {"B5JIS", "182x257"},
        {"jis-b4", "257x364"},
        {"ISOB5", "176x250"},
        {"iso-b5", "176x250"},
        {"EnvC5", "162x229"},
        {"C0", "917x1297"},
        {"Letter", "215.9x279.4"},
        {"Letter.FullBleed", "215.9x279.4"},
        {"na-legal", "215.9x355.6"},
        {"Tabloid", "279.4x431.8"},
        {"Executive", "184.15x266.7"},
        {"Statement", "139.7x215.9"},
        {"Folio", "210x330"},
        {"Quarto", "215.9x275.082"},
        {"Env10", "104.775x241.3"},
        {"EnvMonarch", "98.425x190.5"},
        {"EnvDL", "110x220"},
        {"Postcard", "100x148"},
        // Lists, and names that say nothing.
        {"A4,photographic-glossy,main", "210x297"},
        {"main,Letter", "215.9x279.4"},
        {"glossy,", "none"},
        {"-", "none"},
        {"", "none"},
        {"unknown", "none"},
        {"na", "none"},
        {"_", "none"},
    };
    for (const auto& test : CASES) {
        EXPECT_EQ(SizeOf(test.name), test.size) << test.name;
    }
}

TEST(LogTime, Stamps) {
    const struct {
        const char* text;
        std::optional<int64_t> seconds;
    } CASES[] = {
        {"[21/Nov/2026:09:46:54 +0100]", 1795250814},
        {"[21/Nov/2026:03:48:40 -0500]", 1795250920},
        {"[01/Jan/1970:00:00:00 +0000]", 0},
        {"[01/Jan/1970:00:00:00 +0100]", -3600},
        {"[29/Feb/2024:23:59:59 -0530]", 1709270999},
        {"[29/Feb/2023:00:00:00 +0000]", std::nullopt},
        {"[32/Jan/2026:00:00:00 +0000]", std::nullopt},
        {"[00/Jan/2026:00:00:00 +0000]", std::nullopt},
        {"[01/Foo/2026:00:00:00 +0000]", std::nullopt},
        {"[01/Jan/2026:24:00:00 +0000]", std::nullopt},
        {"[01/Jan/2026:00:60:00 +0000]", std::nullopt},
        {"[01/Jan/2026:00:00:00 *0000]", std::nullopt},
        {"[01/Jan/2026:00:00:0x +0000]", std::nullopt},
        {"[01/Jan/2026:00:00:00 +0000", std::nullopt},
        {"", std::nullopt},
    };
    for (const auto& test : CASES) {
        EXPECT_EQ(ParseLogTime(test.text), test.seconds) << test.text;
    }
}

}  // namespace
}  // namespace tallyquist
