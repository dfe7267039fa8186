// Forking while other threads log: what they hold at that moment must hold up neither side.
#include <fcntl.h>
#include <signal.h>
#include <sys/file.h>
#include <unistd.h>

#include <atomic>
#include <functional>
#include <thread>

#include "tests/plugins/zopmekLogger/LoggerFixture.h"
#include "tests/support/Processes.h"

namespace {

constexpr int THREADS = 3;

class ForkedLogTest : public LoggerFixture {
protected:
    // Starts a child for each number while threads log to a file of their own, then lets them end.
    void ForkAmongThreads(int children, LibLoggerSettings& busy,
                          const std::function<void(int number)>& start) {
        std::atomic<bool> stop = false;
        std::vector<std::thread> threads(THREADS);
        for (std::thread& thread : threads) {
            thread = std::thread([&] {
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
        ChildProcess child([&] { return Log(settings, NumberedMessage(0, number)); });
        failures += child.Wait() != 0 ? 1 : 0;
    });
    EXPECT_EQ(failures, 0);
    EXPECT_EQ(CountMessages(Path("log")), EachMessageOnce(1, CHILDREN));
}

// A process that forked idle children is killed right after the last fork, with threads inside the
// logger; the children must not keep the lock that it held.
TEST_F(ForkedLogTest, IdleChildrenHoldNoLockOfAKilledParent) {
    constexpr int ROUNDS = 30;
    constexpr int CHILDREN = 3;
    LibLoggerSettings settings = Settings(Path("log"));
    for (int round = 0; round < ROUNDS; ++round) {
        ChildProcess parent([&] {
            setpgid(0, 0);
            ForkAmongThreads(CHILDREN, settings, [&](int number) {
                usleep(1000);  // the threads get going
                if (fork() == 0) {
                    _exit(pause());
                }
                if (number == CHILDREN - 1) {
                    kill(getpid(), SIGKILL);
                }
            });
            return 0;
        });
        const pid_t group = parent.Id();
        EXPECT_EQ(parent.Wait(), -1);
        const int file = open(Path("log").c_str(), O_RDWR);
        const bool unlocked = flock(file, LOCK_EX | LOCK_NB) == 0;
        close(file);
        EXPECT_EQ(kill(-group, SIGKILL), 0);  // the children, which were there until now
        ASSERT_TRUE(unlocked) << round;
        ASSERT_EQ(Log(settings, "x"), 0);
    }
}

}  // namespace
