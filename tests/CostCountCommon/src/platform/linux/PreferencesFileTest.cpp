#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <random>
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

TEST_F(StoredPreferences, ComeWithTheFirstNumber) {
    SetPreferenceValue("ErrorLogConfirmTime2", "5");
    SetPreferenceValue(KEY, nullptr);
    EXPECT_EQ(std::nullopt, platform::PreferenceNumber(KEY));
    EXPECT_FALSE(fs::exists(m_home.Path("a")));
}

TEST_F(StoredPreferences, LieInTheConfigurationFolder) {
    const auto expectedFile = [&](const std::string& name) {
        platform::SetPreferenceNumber(KEY, 5);
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
        {std::string("\0\xFF=\0\n", 5), std::nullopt, std::string("\0\xFF=\0\n", 5)},
        {"ErrorLogConfirmTime=5\n" + std::string(2'000'000, 'x'), std::nullopt, ""}};
    for (const auto& expected : CASES) {
        WritePreferences(expected.text);
        EXPECT_EQ(expected.value, platform::PreferenceNumber(KEY)) << expected.text.substr(0, 80);
        platform::SetPreferenceNumber(KEY, 42);
        EXPECT_EQ(42, platform::PreferenceNumber(KEY));
        EXPECT_EQ(expected.kept + "ErrorLogConfirmTime=42\n", ReadFile(m_file));
    }
}

TEST_F(StoredPreferences, AreGivenUpWhereTheyCannotLie) {
    WritePreferences("");
    for (const auto& make : {+[](const char* path) { return mkdir(path, 0700); },
                             +[](const char* path) { return mkfifo(path, 0600); }}) {
        fs::remove(m_file);
        ASSERT_EQ(0, make(m_file.c_str()));
        platform::SetPreferenceNumber(KEY, 5);
        EXPECT_EQ(std::nullopt, platform::PreferenceNumber(KEY));
        EXPECT_FALSE(fs::is_regular_file(m_file));
    }
    fs::remove_all(m_home.Path("a"));
    WriteFile(m_home.Path("a"), "a file in the place of a folder");
    platform::SetPreferenceNumber(KEY, 5);
    EXPECT_EQ(std::nullopt, platform::PreferenceNumber(KEY));
}

TEST_F(StoredPreferences, ThatCannotBeReadAreNotReplaced) {
    WritePreferences("A=1\n");
    ASSERT_EQ(0, chmod(m_file.c_str(), 0));
    ASSERT_EQ(0, chmod(m_home.Path().c_str(), 0711));
    ChildProcess child([&] {
        const std::string folder = fs::path(m_file).parent_path();
        if (geteuid() == 0 && (chown(folder.c_str(), 1234, 0) != 0 ||
                               chown(m_file.c_str(), 1234, 0) != 0 || setuid(1234) != 0)) {
            return 2;
        }
        platform::SetPreferenceNumber(KEY, 5);
        return platform::PreferenceNumber(KEY) ? 1 : 0;
    });
    EXPECT_EQ(0, child.Wait());
    chmod(m_file.c_str(), 0600);
    EXPECT_EQ("A=1\n", ReadFile(m_file));
}

// Each worker counts up in a key of its own and is killed over and over in the middle of it.
TEST_F(StoredPreferences, OfSeveralProcessesThatAreKilledAreAllKept) {
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
        return std::make_unique<ChildProcess>([=]() -> int {
            for (int64_t value = stored[worker] + 1;; ++value) {
                platform::SetPreferenceNumber(KEYS[worker], value);
                stored[worker] = value;
                usleep(500);  // else it would take the lock again before those that wait
            }
        });
    };
    const auto expectKept = [&](int worker) {
        const int64_t value = platform::PreferenceNumber(KEYS[worker]).value_or(-1);
        // A worker may have been killed between storing its number and saying so.
        EXPECT_LE(stored[worker], value);
        EXPECT_GE(stored[worker] + 1, value);
    };
    std::unique_ptr<ChildProcess> children[] = {start(0), start(1), start(2)};
    std::mt19937 random(1);
    for (int kill = 0; kill < WORKERS * KILLS; ++kill) {
        const int worker = kill % WORKERS;
        for (const int64_t before = stored[worker]; stored[worker] == before;) {
            usleep(static_cast<useconds_t>(random() % 500));
        }
        children[worker]->Kill();
        expectKept(worker);
        if (kill < WORKERS * (KILLS - 1)) {
            children[worker] = start(worker);
        }
    }
    for (int worker = 0; worker < WORKERS; ++worker) {
        expectKept(worker);
    }
    EXPECT_EQ(7, platform::PreferenceNumber("Other"));
    EXPECT_EQ(0U, ReadFile(m_file).find("# note\nOther=7\n"));
    munmap(shared, WORKERS * sizeof(Counter));
}

}  // namespace
