// The lock between processes, quirks included.
#include "CostCountCommon/NamedLock.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <pthread.h>
#include <semaphore.h>

#include <ctime>
#include <thread>

#include "CostCountCommon/LockObject.h"
#include "CostCountCommon/include/CEventHandle.h"
#include "tests/support/Processes.h"
#include "tests/support/RecordingLogger.h"
#include "tests/support/TempFolder.h"

namespace {

class NamedLock : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(m_isHeld.Open(UniqueShortName(1).c_str(), O_CREAT | O_EXCL, 0600, 0, false));
        ASSERT_TRUE(m_release.Open(UniqueShortName(2).c_str(), O_CREAT | O_EXCL, 0600, 0, false));
        TakeRecordedCalls();
        CCMLibLogger::getInstance()->InitLibLogger("log", "owner", "module", RECORDING_LOGGER);
    }

    static std::string Log() {
        std::string text;
        for (const RecordedLine& line : TakeRecordedLines()) {
            EXPECT_EQ("NamedLock", line.file);
            text += line.level + std::to_string(line.code) + " " + line.message + "|";
        }
        return text;
    }

    // A process that holds the lock until it is told to give it back, or killed.
    ChildProcess Hold() {
        return ChildProcess([this] {
            CNamedLock lock;
            const unsigned int result = lock.Lock(m_name.c_str(), 0);
            m_isHeld.Post();
            m_release.Wait();
            return static_cast<int>(result);
        });
    }

    const std::string m_name = "lock/" + UniqueShortName();
    CEventHandle m_isHeld;
    CEventHandle m_release;
};

TEST_F(NamedLock, ExcludesAnotherAndIsTakenAgain) {
    CNamedLock one;
    CNamedLock other;
    EXPECT_EQ(CNamedLock::LOCKED, one.Lock(m_name.c_str(), 0));
    EXPECT_EQ(CNamedLock::FAILED, one.Lock(m_name.c_str(), 0)) << "holds one already";
    EXPECT_EQ("", Log());
    EXPECT_EQ(CNamedLock::TIMED_OUT, other.Lock(m_name.c_str(), 0));
    EXPECT_EQ("e11 lock failed: timeout occured.|", Log());
    EXPECT_EQ(-1, one.Unlock()) << "the time-out has taken the name away";
    {
        CNamedLock scoped;
        EXPECT_EQ(CNamedLock::LOCKED, scoped.Lock(m_name.c_str(), 0));
    }
    EXPECT_EQ(CNamedLock::LOCKED, one.Lock(m_name.c_str(), 0));
    EXPECT_EQ(0, one.Unlock());
}

TEST_F(NamedLock, RefusesEmptyAndImpossibleNames) {
    CNamedLock lock;
    for (const char* name : {static_cast<const char*>(nullptr), ""}) {
        EXPECT_EQ(CNamedLock::FAILED, lock.Lock(name, 0));
        EXPECT_FALSE(CNamedLock::IsLocked(name));
        EXPECT_EQ("e0 invalid parameter.|e0 invalid parameter.|", Log());
    }
    const std::string tooLong(300, 'x');
    EXPECT_EQ(CNamedLock::FAILED, lock.Lock(tooLong.c_str(), 0));
    EXPECT_FALSE(CNamedLock::IsLocked(tooLong.c_str()));
    EXPECT_EQ("e22 sem_open failed.|e22 sem_open failed.|", Log());
}

TEST_F(NamedLock, AskingForItTakesTheNameAway) {
    EXPECT_FALSE(CNamedLock::IsLocked(m_name.c_str()));
    sem_t* free = sem_open(("lock%2F" + m_name.substr(5)).c_str(), O_CREAT, 0666, 1);
    EXPECT_FALSE(CNamedLock::IsLocked(m_name.c_str()));
    EXPECT_TRUE(sem_trywait(free) == 0 && sem_trywait(free) != 0) << "asking leaves it as it was";
    sem_close(free);

    CNamedLock holder;
    CNamedLock second;
    EXPECT_EQ(CNamedLock::LOCKED, holder.Lock(m_name.c_str(), 0));
    Log();
    EXPECT_TRUE(CNamedLock::IsLocked(m_name.c_str()));
    EXPECT_EQ("d11 sem_trywait() already locked.|", Log());
    EXPECT_EQ(CNamedLock::LOCKED, second.Lock(m_name.c_str(), 0)) << "a fresh lock";
}

TEST_F(NamedLock, OfAKilledHolderIsTakenOverAtTheSecondTry) {
    ChildProcess holder = Hold();
    m_isHeld.Wait();
    holder.Kill();
    CNamedLock lock;
    EXPECT_EQ(CNamedLock::TIMED_OUT, lock.Lock(m_name.c_str(), 0)) << "nobody gave it back";
    EXPECT_EQ(CNamedLock::LOCKED, lock.Lock(m_name.c_str(), 0));
}

TEST_F(NamedLock, IsHandedToAWaiter) {
    ChildProcess holder = Hold();
    m_isHeld.Wait();
    ChildProcess patient(
        [&] { return static_cast<int>(CNamedLock().Lock(m_name.c_str(), 0xFFFFFFFF)); });
    const std::string memory = "/proc/" + std::to_string(patient.Id()) + "/maps";
    while (ReadFile(memory).find(m_name.substr(5)) == std::string::npos) {
        std::this_thread::yield();  // before it has the lock open it would get one of its own
    }
    m_release.Post();
    EXPECT_EQ(CNamedLock::LOCKED, static_cast<unsigned int>(holder.Wait()));
    EXPECT_EQ(CNamedLock::LOCKED, static_cast<unsigned int>(patient.Wait()));
}

// The processor time that the limit is counted in, seen by the process that waits.
TEST_F(NamedLock, CountsItsLimitInProcessorTime) {
    CNamedLock holder;
    ASSERT_EQ(CNamedLock::LOCKED, holder.Lock(m_name.c_str(), 0));
    const clock_t start = clock();
    EXPECT_EQ(CNamedLock::TIMED_OUT, CNamedLock().Lock(m_name.c_str(), 2));
    EXPECT_LE(2000, clock() - start);
}

TEST_F(NamedLock, ThatIsCancelledLeavesNothing) {
    CNamedLock holder;
    ASSERT_EQ(CNamedLock::LOCKED, holder.Lock(m_name.c_str(), 0));
    CNamedLock waiting;
    std::thread thread([&] { waiting.Lock(m_name.c_str(), 0xFFFFFFFF); });
    pthread_cancel(thread.native_handle());
    thread.join();
    EXPECT_EQ(CNamedLock::LOCKED, waiting.Lock(m_name.c_str(), 0)) << "holds nothing";
}

TEST(LockObject, IsRecursive) {
    CLockObject lock;
    lock.Lock();
    lock.Lock();
    lock.Unlock();
    lock.Unlock();
}

}  // namespace
