#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <cstdint>
#include <filesystem>
#include <limits>
#include <random>
#include <string>

#include "CostCountCommon/include/MacUtility.h"
#include "CostCountCommon/src/platform/Platform.h"
#include "tests/support/Environment.h"
#include "tests/support/TempFolder.h"

namespace {

namespace fs = std::filesystem;

constexpr const char* KEY = "ErrorLogConfirmTime";

std::string Preference(const char* key = KEY) {
    std::string value = "earlier";
    GetPreferenceValue(key, value);
    return value;
}

class Preferences : public testing::Test {
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

TEST_F(Preferences, StoresTheNumberThatTheTextBeginsWith) {
    EXPECT_EQ("", Preference());
    const struct {
        const char* text;
        const char* stored;
    } CASES[] = {{"1700000000", "1700000000"},
                 {" \t-12.5x", "-12"},
                 {"+7", "7"},
                 {"", "0"},
                 {"none", "0"},
                 {"-9223372036854775808", "-9223372036854775808"},
                 {"9223372036854775808", "9223372036854775807"}};
    for (const auto& expected : CASES) {
        SetPreferenceValue(KEY, expected.text);
        EXPECT_EQ(expected.stored, Preference()) << expected.text;
    }
    std::string key = KEY;
    GetPreferenceValue(key.c_str(), key);
    EXPECT_EQ("9223372036854775807", key);
}

TEST_F(Preferences, KnowsOneKey) {
    unsigned int valid = 7;
    EXPECT_EQ(1U, IsValidPreferenceKey(KEY, &valid));
    EXPECT_EQ(1U, valid);
    for (const char* key :
         {static_cast<const char*>(nullptr), "", "errorLogConfirmTime", "ErrorLogConfirmTime2"}) {
        valid = 7;
        EXPECT_EQ(0U, IsValidPreferenceKey(key, &valid));
        EXPECT_EQ(0U, valid);
        EXPECT_EQ(0U, IsValidPreferenceKey(key, nullptr));
        SetPreferenceValue(key, "5");
        EXPECT_EQ("", Preference(key));
    }
    SetPreferenceValue(KEY, nullptr);
    EXPECT_FALSE(fs::exists(m_home.Path("a")));
}

TEST_F(Preferences, LieInTheConfigurationFolder) {
    const auto expectedFile = [&](const std::string& name) {
        SetPreferenceValue(KEY, "5");
        const fs::path file = m_home.Path(name + "/Norvane/Tallyquist/preferences");
        EXPECT_EQ("ErrorLogConfirmTime=5\n", ReadFile(file));
        struct stat status {};
        stat(file.parent_path().c_str(), &status);
        EXPECT_EQ(S_IFDIR | 0700U, status.st_mode);
    };
    expectedFile("a/config");
    const ScopedVariable relative("XDG_CONFIG_HOME", "relative");
    expectedFile(".config");
}

TEST_F(Preferences, SurviveWhatelseIsInTheFile) {
    const struct {
        std::string text;
        const char* value;
        std::string kept;
    } CASES[] = {{"A=1\nErrorLogConfirmTime=5\n# note\n", "5", "A=1\n# note\n"},
                 {"ErrorLogConfirmTime=5\nErrorLogConfirmTime=6", "6", ""},
                 {"ErrorLogConfirmTime=5x\nErrorLogConfirmTime2=1", "", "ErrorLogConfirmTime2=1\n"},
                 {"ErrorLogConfirmTime=\n\nErrorLogConfirmTime", "", "\nErrorLogConfirmTime\n"},
                 {"ErrorLogConfirmTime=9223372036854775808\n", "", ""},
                 {std::string("\0\xFF=\0\n", 5), "", std::string("\0\xFF=\0\n", 5)},
                 {"ErrorLogConfirmTime=5\n" + std::string(2'000'000, 'x'), "", ""}};
    for (const auto& expected : CASES) {
        WritePreferences(expected.text);
        EXPECT_EQ(expected.value, Preference()) << expected.text.substr(0, 80);
        SetPreferenceValue(KEY, "42");
        EXPECT_EQ("42", Preference());
        EXPECT_EQ(expected.kept + "ErrorLogConfirmTime=42\n", ReadFile(m_file));
    }
}

TEST_F(Preferences, AreGivenUpWhereTheyCannotLie) {
    WritePreferences("");
    for (const auto& make : {+[](const char* path) { return mkdir(path, 0700); },
                             +[](const char* path) { return mkfifo(path, 0600); }}) {
        fs::remove(m_file);
        ASSERT_EQ(0, make(m_file.c_str()));
        SetPreferenceValue(KEY, "5");
        EXPECT_EQ("", Preference());
        EXPECT_FALSE(fs::is_regular_file(m_file));
    }
    fs::remove_all(m_home.Path("a"));
    WriteFile(m_home.Path("a"), "a file in the place of a folder");
    SetPreferenceValue(KEY, "5");
    EXPECT_EQ("", Preference());
}

TEST_F(Preferences, ThatCannotBeReadAreNotReplaced) {
    WritePreferences("A=1\n");
    ASSERT_EQ(0, chmod(m_file.c_str(), 0));
    ASSERT_EQ(0, chmod(m_home.Path().c_str(), 0711));
    const pid_t child = fork();
    if (child == 0) {
        const std::string folder = fs::path(m_file).parent_path();
        if (geteuid() == 0 && (chown(folder.c_str(), 1234, 0) != 0 ||
                               chown(m_file.c_str(), 1234, 0) != 0 || setuid(1234) != 0)) {
            _exit(2);
        }
        SetPreferenceValue(KEY, "5");
        _exit(Preference().empty() ? 0 : 1);
    }
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_EQ(0, status);
    chmod(m_file.c_str(), 0600);
    EXPECT_EQ("A=1\n", ReadFile(m_file));
}

// Each worker counts up in a key of its own and is killed over and over in the middle of it.
TEST_F(Preferences, OfSeveralProcessesThatAreKilledAreAllKept) {
    constexpr int WORKERS = 3;
    constexpr int KILLS = 15;
    const char* const KEYS[WORKERS] = {"A", "B", "C"};
    WritePreferences("# note\nOther=7\n");
    // How far each worker got, which it says after its number was stored.
    using Counter = std::atomic<int64_t>;
    void* shared = mmap(nullptr, WORKERS * sizeof(Counter), PROT_READ | PROT_WRITE,
                        MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    ASSERT_NE(MAP_FAILED, shared);
    auto* stored = static_cast<Counter*>(shared);
    const auto start = [&](int worker) {
        const pid_t child = fork();
        if (child == 0) {
            for (int64_t value = stored[worker] + 1;; ++value) {
                platform::SetPreferenceNumber(KEYS[worker], value);
                stored[worker] = value;
            }
        }
        return child;
    };
    pid_t children[WORKERS];
    for (int worker = 0; worker < WORKERS; ++worker) {
        children[worker] = start(worker);
    }
    std::mt19937 random(1);
    for (int kill = 0; kill < WORKERS * KILLS; ++kill) {
        const int worker = kill % WORKERS;
        for (const int64_t before = stored[worker]; stored[worker] == before;) {
            usleep(static_cast<useconds_t>(random() % 500));
        }
        ::kill(children[worker], SIGKILL);
        waitpid(children[worker], nullptr, 0);
        if (kill < WORKERS * (KILLS - 1)) {
            children[worker] = start(worker);
        }
    }
    for (int worker = 0; worker < WORKERS; ++worker) {
        const int64_t value = platform::PreferenceNumber(KEYS[worker]).value_or(-1);
        // A worker may have been killed between storing its number and saying so.
        EXPECT_LE(stored[worker], value);
        EXPECT_GE(stored[worker] + 1, value);
    }
    EXPECT_EQ(7, platform::PreferenceNumber("Other"));
    EXPECT_EQ(0U, ReadFile(m_file).find("# note\nOther=7\n"));
    munmap(shared, WORKERS * sizeof(Counter));
}

}  // namespace
