#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "CostCountCommon/include/MacUtility.h"
#include "CostCountCommon/src/platform/Platform.h"
#include "tests/support/Environment.h"
#include "tests/support/Processes.h"
#include "tests/support/TempFolder.h"

namespace {

namespace fs = std::filesystem;

constexpr const char* KEY = "ErrorLogConfirmTime";

class StoredPreferences : public testing::Test {
protected:
    void WritePreferences(const std::string& text) {
        fs::create_directories(fs::path(m_file).parent_path());
        WriteFile(m_file, text);
    }

    TempFolder m_home;
    ScopedVariable m_homeVariable{"HOME", m_home.Path().c_str()};
    ScopedVariable m_config{"XDG_CONFIG_HOME", m_home.Path("a/config").c_str()};
    std::string m_file = m_home.Path("a/config/Norvane/Tallyquist/preferences");
};

TEST_F(StoredPreferences, LieInTheConfigurationFolderFromTheFirstNumberOn) {
    const auto expectFile = [&](const std::string& name) {
        SetPreferenceValue(KEY, nullptr);
        EXPECT_EQ(std::nullopt, platform::PreferenceNumber(KEY));
        const fs::path file = m_home.Path(name + "/Norvane/Tallyquist/preferences");
        EXPECT_FALSE(fs::exists(file.parent_path()));
        platform::SetPreferenceNumber(KEY, 5);
        EXPECT_EQ("ErrorLogConfirmTime=5\n", ReadFile(file));
        EXPECT_EQ(fs::perms(0700), fs::status(file.parent_path()).permissions());
    };
    expectFile("a/config");
    const ScopedVariable relative("XDG_CONFIG_HOME", "relative");
    expectFile(".config");
}

TEST_F(StoredPreferences, SurviveWhatelseIsInTheFile) {
    const struct {
        std::string text;
        std::optional<int64_t> value;
        std::string kept;
    } CASES[] = {
        {"A=1\nErrorLogConfirmTime=5\n# note\n", 5, "A=1\n# note\n"},
        {"ErrorLogConfirmTime=5\nErrorLogConfirmTime=6", 6, ""},
        {"ErrorLogConfirmTime=5x\nErrorLogConfirmTime2=1", std::nullopt,
         "ErrorLogConfirmTime2=1\n"},
        {"ErrorLogConfirmTime=\n\nErrorLogConfirmTime", std::nullopt, "\nErrorLogConfirmTime\n"},
        {"ErrorLogConfirmTime=9223372036854775808\n", std::nullopt, ""},
        {"ErrorLogConfirmTime=5\n" + std::string(2'000'000, 'x'), std::nullopt, ""}};
    for (const auto& expected : CASES) {
        WritePreferences(expected.text);
        EXPECT_EQ(expected.value, platform::PreferenceNumber(KEY)) << expected.text.substr(0, 80);
        platform::SetPreferenceNumber(KEY, 42);
        EXPECT_EQ(42, platform::PreferenceNumber(KEY));
        EXPECT_EQ(expected.kept + "ErrorLogConfirmTime=42\n", ReadFile(m_file));
    }
}

TEST_F(StoredPreferences, ThatCannotBeReadAreNotReplaced) {
    WritePreferences("");
    fs::remove(m_file);
    ASSERT_EQ(0, mkfifo(m_file.c_str(), 0600));
    platform::SetPreferenceNumber(KEY, 5);
    EXPECT_EQ(std::nullopt, platform::PreferenceNumber(KEY));
    EXPECT_TRUE(fs::is_fifo(m_file));
}

TEST_F(StoredPreferences, OfSeveralProcessesAreAllKept) {
    constexpr int64_t COUNT = 50;
    WritePreferences("# note\nOther=7\n");
    const auto store = [](const char* key) {
        return std::make_unique<ChildProcess>([key] {
            for (int64_t value = 1; value <= COUNT; ++value) {
                platform::SetPreferenceNumber(key, value);
                usleep(500);  // else it would take the lock again before those that wait
            }
            return 0;
        });
    };
    for (const auto& child : {store("A"), store("B"), store("C")}) {
        EXPECT_EQ(0, child->Wait());
    }
    for (const char* key : {"A", "B", "C"}) {
        EXPECT_EQ(COUNT, platform::PreferenceNumber(key)) << key;
    }
    EXPECT_EQ(0U, ReadFile(m_file).find("# note\nOther=7\n"));
}

}  // namespace
