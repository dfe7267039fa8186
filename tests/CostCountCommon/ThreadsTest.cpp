// Threads, waits for one and for several, and waits with a time-out.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <array>
#include <thread>

#include "CostCountCommon/include/CEventHandle.h"
#include "CostCountCommon/include/CHandleSupport.h"
#include "CostCountCommon/include/CThreadHandle.h"
#include "compatible/osFree.h"
#include "tests/support/Processes.h"

namespace {

constexpr unsigned int AN_HOUR = 3600000;

class Threads : public testing::Test {
protected:
    void SetUp() override {
        // The thread sanitizer has a thread of its own from the first one on.
        std::thread([] {}).join();
        for (int i = 0; i < 3; ++i) {
            ASSERT_TRUE(m_events[static_cast<size_t>(i)].Open(UniqueShortName(i).c_str(),
                                                              O_CREAT | O_EXCL, 0666, 0, false));
        }
    }

    static unsigned int WaitOn(void* event) { return static_cast<CEventHandle*>(event)->Wait(); }

    static void ExpectNoThread(CThreadHandle& thread) {
        for (const unsigned int result : {thread.Wait(), thread.TryWait(), thread.TimedWait(1)}) {
            EXPECT_EQ(WAIT_FAILED, result);
        }
        thread.Cancel();
    }

    std::array<CEventHandle, 3> m_events;
};

TEST_F(Threads, AreWaitedForOnce) {
    CThreadHandle thread;
    ExpectNoThread(thread);
    ASSERT_EQ(0U, thread.Create(WaitOn, &m_events[0]));
    EXPECT_EQ(WAIT_FAILED, thread.Create(WaitOn, &m_events[0]));
    EXPECT_EQ(WAIT_TIMEOUT, thread.TryWait());
    EXPECT_EQ(WAIT_TIMEOUT, thread.TimedWait(5));
    m_events[0].Post();
    EXPECT_EQ(WAIT_OBJECT_0, thread.TimedWait(AN_HOUR));
    ExpectNoThread(thread);
    EXPECT_EQ(WAIT_FAILED, thread.Create(WaitOn, &m_events[0]));
}

TEST_F(Threads, RunInTheCallersThreadToo) {
    CThreadHandle thread;
    EXPECT_EQ(WAIT_FAILED, thread.Run()) << "nothing to run yet";
    ASSERT_EQ(0U, thread.Create(WaitOn, &m_events[0]));
    CThreadHandle::CleanUpForRun(&thread);
    EXPECT_EQ(WAIT_TIMEOUT, thread.TimedWait(5)) << "the thread goes on";
    thread.Cancel();
    EXPECT_EQ(WAIT_OBJECT_0, thread.Wait());
    m_events[0].Post();
    EXPECT_EQ(0U, thread.Run());
    EXPECT_EQ(WAIT_TIMEOUT, m_events[0].TryWait());
}

TEST_F(Threads, DoNotWaitForThemselves) {
    struct Waiter {
        CEventHandle* isStored;
        CThreadHandle thread;
    } waiter{&m_events[0], {}};
    const auto wait = [](void* argument) {
        auto* self = static_cast<Waiter*>(argument);
        self->isStored->Wait();
        EXPECT_EQ(WAIT_FAILED, self->thread.Wait());
        return 0U;
    };
    ASSERT_EQ(0U, waiter.thread.Create(wait, &waiter));
    m_events[0].Post();
    EXPECT_EQ(WAIT_OBJECT_0, waiter.thread.Wait());
}

TEST_F(Threads, OfTheWindowsKind) {
    const auto start = [](void* argument) {
        *static_cast<unsigned long*>(argument) = GetCurrentThreadId();
        return 7U;
    };
    unsigned long seen = 0;
    void* thread = _beginthreadex(nullptr, 0, start, &seen, 0, nullptr);
    ASSERT_NE(nullptr, thread);
    const unsigned long id = GetThreadId(thread);
    EXPECT_EQ(0, WaitForSingleObject(thread, 0xFFFFFFFF));
    EXPECT_EQ(id, seen);
    EXPECT_NE(GetCurrentThreadId(), seen);
    EXPECT_EQ(1, CloseHandle(thread));
    EXPECT_EQ(0U, GetThreadId(static_cast<CHandle*>(&m_events[0])));
    EXPECT_EQ(nullptr, _beginthreadex(nullptr, 0, nullptr, nullptr, 0, nullptr));
}

TEST_F(Threads, ThatCannotBeMadeFailEveryWait) {
    if (getuid() != 0) {
        GTEST_SKIP() << "only root can become a user without other processes";
    }
    for (const rlim_t more : {rlim_t{0}, rlim_t{1}}) {  // a timed wait takes two
        ChildProcess child([&] {
            const int before = ThreadCount();
            const rlim_t limit = static_cast<rlim_t>(before) + more;
            const struct rlimit threads { limit, limit };
            if (setrlimit(RLIMIT_NPROC, &threads) != 0 ||
                setuid(static_cast<uid_t>(100000 + getpid())) != 0) {
                return 1;
            }
            if (m_events[0].TimedWait(AN_HOUR) != WAIT_FAILED || !ThreadCountFallsTo(before)) {
                return 2;
            }
            CThreadHandle thread;
            return more == 1 || (thread.Create(WaitOn, &m_events[0]) == EAGAIN &&
                                 thread.TryWait() == WAIT_FAILED)
                       ? 0
                       : 3;
        });
        EXPECT_EQ(0, child.Wait()) << more;
    }
}

class Handles : public Threads {
protected:
    void* m_handles[4] = {nullptr, static_cast<CHandle*>(&m_events[0]),
                          static_cast<CHandle*>(&m_events[1]), static_cast<CHandle*>(&m_events[2])};
};

TEST_F(Handles, TheLowestSignalledOneEndsTheWait) {
    CHandle noWaitable;
    m_handles[0] = &noWaitable;
    EXPECT_EQ(258, WaitForMultipleObjects(4, m_handles, false, 0));
    m_events[1].Post();
    m_events[2].Post();
    EXPECT_EQ(2, WaitForMultipleObjects(4, m_handles, false, 0));
    EXPECT_EQ(3, WaitForMultipleObjects(4, m_handles, false, 0xFFFFFFFF));
    EXPECT_EQ(-1, WaitForSingleObject(&noWaitable, 0xFFFFFFFF));
    EXPECT_EQ(WAIT_FAILED, CHandleSupport::TimedWait(nullptr, 1));
}

TEST_F(Handles, AllOfThemOnlyForEver) {
    for (CEventHandle& event : m_events) {
        event.Post();
    }
    EXPECT_EQ(-1, WaitForMultipleObjects(4, m_handles, true, 5000));
    EXPECT_EQ(0, WaitForMultipleObjects(4, m_handles, true, 0xFFFFFFFF));
    EXPECT_EQ(258, WaitForMultipleObjects(4, m_handles, false, 0)) << "all were consumed";
    for (const bool all : {false, true}) {
        EXPECT_EQ(-1, WaitForMultipleObjects(0, m_handles, all, 0xFFFFFFFF));
        EXPECT_EQ(-1, WaitForMultipleObjects(1, nullptr, all, 0xFFFFFFFF));
    }
}

TEST_F(Handles, SeveralAreTimedInProcessorTime) {
    const clock_t start = clock();
    EXPECT_EQ(258, WaitForMultipleObjects(4, m_handles, false, 1));
    EXPECT_LE(1000, clock() - start) << "a process that sleeps uses much less in a millisecond";
}

// Signals that come as the time runs out are taken or left, never lost, and nothing stays behind.
TEST_F(Threads, TimedWaitsRaceTheirSignals) {
    constexpr int COUNT = 1000;
    const int before = ThreadCount();
    int taken = 0;
    for (int i = 0; i < COUNT; ++i) {
        std::thread poster([&, i] {
            const struct timespec time { 0, 900000 + i % 100 * 4000 };
            nanosleep(&time, nullptr);
            m_events[0].Post();
        });
        const int result = WaitForSingleObject(static_cast<CHandle*>(&m_events[0]), 1);
        ASSERT_TRUE(result == 0 || result == 258) << result;
        taken += result == 0 ? 1 : 0;
        poster.join();
    }
    for (; m_events[0].TryWait() == WAIT_OBJECT_0; ++taken) {
    }
    EXPECT_EQ(COUNT, taken);
    EXPECT_TRUE(ThreadCountFallsTo(before));
}

TEST_F(Threads, AreCancelledInATimedWait) {
    const int before = ThreadCount();
    for (int i = 0; i < 200; ++i) {
        CThreadHandle thread;
        const auto wait = [](void* event) {
            return static_cast<CEventHandle*>(event)->TimedWait(AN_HOUR);
        };
        ASSERT_EQ(0U, thread.Create(wait, &m_events[0]));
        if (i % 2 == 0) {
            // Now and then the wait is under way.
            while (ThreadCount() < before + 3) {
                std::this_thread::yield();
            }
        }
        thread.Cancel();
        ASSERT_EQ(WAIT_OBJECT_0, thread.Wait());
        ASSERT_TRUE(ThreadCountFallsTo(before));
    }
    m_events[0].Post();
    EXPECT_EQ(WAIT_OBJECT_0, m_events[0].TimedWait(AN_HOUR)) << "nobody else waits";
}

TEST(Timespec, IsSecondsAndNanoseconds) {
    struct timespec time {};
    CHandleSupport::MillisecondsToTimespec(4294967295, &time);
    EXPECT_EQ(4294967, time.tv_sec);
    EXPECT_EQ(295000000, time.tv_nsec);
}

}  // namespace
