// Where the log file lies, how many files there are, and what happens when it cannot be written.
#include <fcntl.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <functional>

#include "tests/plugins/zopmekLogger/LoggerFixture.h"
#include "tests/support/Processes.h"

namespace {

namespace fs = std::filesystem;

class LogRotationTest : public LoggerFixture {
protected:
    // The messages of a file, each followed by a blank; "-" when there is no such file.
    static std::string Messages(const std::string& path) {
        if (!fs::exists(path)) {
            return "-";
        }
        std::string messages;
        for (const std::string& line : Lines(path)) {
            messages += line.substr(line.rfind(',') + 1) + " ";
        }
        return messages;
    }

    // The length of the line with a message of one character.
    uint64_t LineLength() const {
        LibLoggerSettings settings = Settings(Path("length"));
        EXPECT_EQ(Log(settings, "x"), 0);
        return fs::file_size(Path("length"));
    }

    // In a process of its own, which must print nothing.
    int RunSilently(const std::function<int()>& run) const {
        const std::string printed = Path("printed");
        ChildProcess child([&] {
            const int file = creat(printed.c_str(), 0600);
            dup2(file, STDOUT_FILENO);
            dup2(file, STDERR_FILENO);
            return run();
        });
        const int result = child.Wait();
        EXPECT_EQ(ReadFile(printed), "");
        return result;
    }
};

struct RotationCase {
    uint64_t lines;  // the limit, as a number of lines
    int64_t bytes;   // and of bytes more or less than that
    uint32_t count;
    const char* files;  // what is in the current file, then in each older one
};

TEST_F(LogRotationTest, KeepsTheNumberAndSizeOfFilesBehindALink) {
    constexpr RotationCase ROWS[] = {
        {0, 0, 3, "1 2 3 4 5 6 7 |-"},
        {2, 0, 0, "7 |-"},
        {2, 0, 1, "7 |-"},
        {2, 0, 3, "7 |5 6 |3 4 |-"},
        {2, -1, 3, "7 |6 |5 |-"},
        {2, 0, UINT32_MAX, "7 |5 6 |3 4 |1 2 |-"},
        {0, 1, 3, "7 |6 |5 |-"},  // each line is longer than the limit
    };
    const uint64_t length = LineLength();
    fs::create_symlink("row/log.csv", Path("link"));
    for (const RotationCase& row : ROWS) {
        SCOPED_TRACE(row.files);
        fs::create_directory(Path("row"));
        const std::string path = Path("row/log.csv");
        LibLoggerSettings settings = Settings(
            Path("link"), length * row.lines + static_cast<uint64_t>(row.bytes), row.count);
        for (int number = 1; number <= 7; ++number) {
            ASSERT_EQ(Log(settings, std::to_string(number)), 0);
        }
        std::string files = Messages(path);
        for (int older = 1; !files.ends_with('-'); ++older) {
            files += "|";
            files += Messages(path + "." + std::to_string(older));
        }
        EXPECT_EQ(files, row.files);
        EXPECT_TRUE(fs::is_symlink(Path("link")));
        fs::remove_all(Path("row"));
    }
}

TEST_F(LogRotationTest, ClosesGapsAndDropsFilesBeyondTheNumber) {
    const std::string path = Path("log.csv");
    LibLoggerSettings settings = Settings(path, 1, 5);
    for (const char* message : {"1", "2", "3", "4", "5"}) {
        ASSERT_EQ(Log(settings, message), 0);
    }
    fs::remove(path + ".2");
    ASSERT_EQ(Log(settings, "6"), 0);
    EXPECT_EQ(Messages(path) + Messages(path + ".1") + Messages(path + ".2"), "6 5 4 ");
    EXPECT_EQ(Messages(path + ".3") + Messages(path + ".4"), "2 1 ");

    settings.m_countValue = 2;
    ASSERT_EQ(Log(settings, "7"), 0);
    EXPECT_EQ(Messages(path) + Messages(path + ".1") + Messages(path + ".2"), "7 6 -");
    EXPECT_FALSE(fs::exists(path + ".3") || fs::exists(path + ".4"));
}

TEST_F(LogRotationTest, RelativeNamesLieInTheDataFolder) {
    LibLoggerSettings settings = Settings("sub/log.csv");
    ASSERT_EQ(Log(settings, "x"), 0);
    EXPECT_EQ(Messages(Path("data/K7Q3MZP2WD.RX.qvtrel/Library/Application Support/Norvane/"
                            "Tallyquist/sub/log.csv")),
              "x ");
}

TEST_F(LogRotationTest, SilentlyReportsWhatCannotBeWritten) {
    fs::create_directory(Path("folder"));
    ASSERT_EQ(mkfifo(Path("pipe").c_str(), 0600), 0);
    WriteFile(Path("data"), "a file where the data folder should be");
    struct {
        std::string name;
        int error;
    } const rows[] = {
        {"", EINVAL},
        {Path("missing/log.csv"), ENOENT},
        {Path("folder"), EISDIR},
        {Path("data/log.csv"), ENOTDIR},
        {"log.csv", ENOTDIR},
        {Path("pipe"), EINVAL},
        {"/dev/full", ENOSPC},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        LibLoggerSettings settings = Settings(row.name);
        EXPECT_EQ(RunSilently([&] { return Log(settings, "x"); }), row.error);
    }
    EXPECT_FALSE(fs::exists(Path("missing")));
    EXPECT_EQ(m_alWrite("A", 1, nullptr, "m", "", 0, 'i', "x"), EINVAL);
}

// The limit on the size of files cuts the write that crosses it, as a full disk does, and the next
// one raises a signal whose default action, in force here, ends the process.
TEST_F(LogRotationTest, FullDiskLeavesNoTornLine) {
    const std::string path = Path("log.csv");
    LibLoggerSettings settings = Settings(path);
    const uint64_t length = LineLength();
    const int result = RunSilently([&] {
        const struct rlimit limit { length * 2 + length / 2, length * 2 + length / 2 };
        setrlimit(RLIMIT_FSIZE, &limit);
        const bool fits = Log(settings, "1") == 0 && Log(settings, "2") == 0;
        const bool reported = fits && Log(settings, "3") == EFBIG;
        sigset_t signals;
        sigset_t mask;
        sigemptyset(&signals);
        sigaddset(&signals, SIGXFSZ);
        sigprocmask(SIG_BLOCK, &signals, &mask);
        raise(SIGXFSZ);  // the caller's own, which stays
        const bool reportedAgain = Log(settings, "4") == EFBIG;
        sigpending(&signals);
        const bool restored = sigismember(&mask, SIGXFSZ) == 0 && sigismember(&signals, SIGXFSZ);
        return reported && reportedAgain && restored ? 0 : 1;
    });
    EXPECT_EQ(result, 0);
    ASSERT_EQ(Log(settings, "5"), 0);
    EXPECT_EQ(Messages(path), "1 2 5 ");
}

TEST_F(LogRotationTest, LineAfterATornOneStandsAlone) {
    const std::string path = Path("log.csv");
    WriteFile(path, "begun by a writer that was killed");
    LibLoggerSettings settings = Settings(path);
    ASSERT_EQ(Log(settings, "x"), 0);
    EXPECT_EQ(Messages(path), "begun by a writer that was killed x ");
}

}  // namespace
