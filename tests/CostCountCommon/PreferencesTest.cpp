#include <gtest/gtest.h>

#include <string>

#include "CostCountCommon/include/MacUtility.h"
#include "tests/support/Environment.h"
#include "tests/support/Processes.h"
#include "tests/support/TempFolder.h"

namespace {

constexpr const char* KEY = "ErrorLogConfirmTime";

std::string Preference(const char* key = KEY) {
    std::string value = "earlier";
    GetPreferenceValue(key, value);
    return value;
}

// Not every system lets the environment tell where preferences lie. They may be there from an
// earlier run, and tests take turns at them.
class Preferences : public testing::Test {
protected:
    Turn m_turn{"preferences"};
    TempFolder m_home;
    ScopedVariable m_homeVariable{"HOME", m_home.Path().c_str()};
    ScopedVariable m_config{"XDG_CONFIG_HOME", m_home.Path("a/config").c_str()};
};

TEST_F(Preferences, StoresTheNumberThatTheTextBeginsWith) {
    const struct {
        const char* text;
        const char* stored;
    } CASES[] = {{"1700000000", "1700000000"},
                 {" \t-12.5x", "-12"},
                 {"+010", "10"},
                 {"none", "0"},
                 {"-9223372036854775808", "-9223372036854775808"},
                 {"9223372036854775808", "9223372036854775807"}};
    for (const auto& expected : CASES) {
        SetPreferenceValue(KEY, "5");
        SetPreferenceValue(KEY, expected.text);
        EXPECT_EQ(expected.stored, Preference()) << expected.text;
    }
    std::string key = KEY;
    GetPreferenceValue(key.c_str(), key);
    EXPECT_EQ("9223372036854775807", key);
}

TEST_F(Preferences, KnowsOneKey) {
    SetPreferenceValue(KEY, "42");
    SetPreferenceValue(KEY, nullptr);
    unsigned int valid = 7;
    for (const char* key : {static_cast<const char*>(nullptr), "", "errorLogConfirmTime"}) {
        EXPECT_EQ(0U, IsValidPreferenceKey(key, &valid));
        EXPECT_EQ(0U, valid);
        SetPreferenceValue(key, "5");
        EXPECT_EQ("", Preference(key));
    }
    EXPECT_EQ(1U, IsValidPreferenceKey(KEY, &valid));
    EXPECT_EQ(1U, valid);
    EXPECT_EQ("42", Preference());
}

}  // namespace
