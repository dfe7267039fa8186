// Several processes and threads that write to one log file while it is rotated.
#include <unistd.h>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <list>
#include <thread>

#include "tests/plugins/zopmekLogger/LoggerFixture.h"
#include "tests/support/Processes.h"

namespace {

using std::filesystem::exists;

constexpr int PROCESSES = 4;
constexpr int THREADS = 4;
constexpr int LINES = 250;

class SharedLogTest : public LoggerFixture {
protected:
    // Writes the lines of one writer on each thread; the number of those that were not written.
    int WriteOnThreads(LibLoggerSettings settings, int process) const {
        std::atomic<int> failures = 0;
        std::vector<std::thread> threads;
        threads.reserve(THREADS);
        for (int thread = 0; thread < THREADS; ++thread) {
            threads.emplace_back([&, writer = process * THREADS + thread] {
                for (int number = 0; number < LINES; ++number) {
                    failures += Log(settings, NumberedMessage(writer, number)) != 0 ? 1 : 0;
                }
            });
        }
        for (std::thread& thread : threads) {
            thread.join();
        }
        return failures;
    }

    void WriteInProcesses(const LibLoggerSettings& settings) const {
        std::list<ChildProcess> children;
        for (int process = 0; process < PROCESSES; ++process) {
            children.emplace_back([&] { return WriteOnThreads(settings, process) == 0 ? 0 : 1; });
        }
        for (ChildProcess& child : children) {
            EXPECT_EQ(child.Wait(), 0);
        }
    }
};

TEST_F(SharedLogTest, KeepsEveryLineWholeAcrossRotations) {
    for (const uint64_t limit : {uint64_t{2000}, uint64_t{50000}, uint64_t{0}}) {
        const std::string path = Path("log" + std::to_string(limit));
        WriteInProcesses(Settings(path, limit, 100000));
        EXPECT_EQ(CountMessages(path), EachMessageOnce(PROCESSES * THREADS, LINES));
        if (limit != 0) {  // it was rotated many times
            EXPECT_LE(std::filesystem::file_size(path + ".9"), limit);
        }
    }
}

// Writers are killed at whatever point they have reached, rotations among them; the lines of a
// steady writer all arrive, and a killed one leaves at most a piece of a line on a line of its own.
TEST_F(SharedLogTest, SurvivesKilledWriters) {
    constexpr int KILLS = 150;
    const std::string path = Path("log");
    LibLoggerSettings settings = Settings(path, 4000, 100000);
    // Writes for as long as others are killed, and leaves the number of its lines in a file.
    ChildProcess steady([&] {
        int failures = 0;
        int number = 0;
        for (; !exists(Path("stop")); ++number) {
            failures += Log(settings, NumberedMessage(0, number)) != 0 ? 1 : 0;
        }
        std::ofstream(Path("written")) << number;
        return failures == 0 ? 0 : 1;
    });
    for (int round = 0; round < KILLS; ++round) {
        int ends[2] = {};
        ASSERT_EQ(pipe(ends), 0);
        ChildProcess victim([&] {
            close(ends[0]);
            for (char byte = 'x';;) {
                Log(settings, "victim");
                (void)!write(ends[1], &byte, 1);
            }
            return 0;
        });
        char byte = '\0';
        for (int line = 0; line <= round % 20; ++line) {
            ASSERT_EQ(read(ends[0], &byte, 1), 1);
        }
        victim.Kill();
        close(ends[0]);
        close(ends[1]);
    }
    std::ofstream(Path("stop")).flush();
    EXPECT_EQ(steady.Wait(), 0);
    ASSERT_EQ(Log(settings, "last"), 0);

    std::map<std::string, int> seen = CountMessages(path);
    EXPECT_GE(seen["victim"], KILLS);
    for (const auto& [message, count] : EachMessageOnce(1, std::stoi(ReadFile(Path("written"))))) {
        EXPECT_EQ(seen[message], count) << message;
    }
    EXPECT_EQ(seen["last"], 1);
}

}  // namespace
