// Forking while other threads log: what they hold at that moment must hold up neither side.
#include <signal.h>
#include <unistd.h>

#include <atomic>
#include <thread>

#include "tests/plugins/zopmekLogger/LoggerFixture.h"

namespace {

constexpr int THREADS = 3;

class ForkedLogTest : public LoggerFixture {
protected:
    // Starts a child for each number while threads log to a file of their own, then lets them end.
    void ForkAmongThreads(int children, LibLoggerSettings& busy,
                          const std::function<void(int number)>& start) {
        std::atomic<bool> stop = false;
        std::vector<std::thread> threads;
        threads.reserve(THREADS);
        for (int thread = 0; thread < THREADS; ++thread) {
            threads.emplace_back([&] {
                while (!stop) {
                    EXPECT_EQ(Log(busy, "busy"), 0);
                }
            });
        }
        for (int number = 0; number < children; ++number) {
            start(number);
        }
        stop = true;
        for (std::thread& thread : threads) {
            thread.join();
        }
    }
};

TEST_F(ForkedLogTest, ChildrenLogAtOnce) {
    constexpr int CHILDREN = 1000;
    LibLoggerSettings busy = Settings(Path("busy"), 100000, 2);
    LibLoggerSettings settings = Settings(Path("log"), 5000, 100000);
    int failures = 0;
    ForkAmongThreads(CHILDREN, busy, [&](int number) {
        const pid_t child = StartChild([&] { return Log(settings, NumberedMessage(0, number)); });
        failures += WaitForChild(child) != 0 ? 1 : 0;
    });
    EXPECT_EQ(failures, 0);
    EXPECT_EQ(CountMessages(Path("log")), EachMessageOnce(1, CHILDREN));
}

TEST_F(ForkedLogTest, IdleChildrenHoldNoLock) {
    constexpr int CHILDREN = 100;
    LibLoggerSettings settings = Settings(Path("log"), 100000, 2);
    std::vector<pid_t> children;
    alarm(60);  // a lock that a child keeps would hold up the threads for ever
    ForkAmongThreads(CHILDREN, settings, [&](int) {
        children.push_back(StartChild([] {
            pause();
            return 0;
        }));
    });
    EXPECT_EQ(Log(settings, "x"), 0);
    for (const pid_t child : children) {
        kill(child, SIGKILL);
        WaitForChild(child);
    }
}

}  // namespace
