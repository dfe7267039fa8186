// Events within and between processes, through the class and the Windows-style functions.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <semaphore.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/time.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <filesystem>
#include <thread>

#include "CostCountCommon/include/CEventHandle.h"
#include "compatible/osFree.h"
#include "tests/support/Processes.h"
#include "tests/support/RecordingLogger.h"

namespace {

namespace fs = std::filesystem;

constexpr int NEW = O_CREAT | O_EXCL;

class Events : public testing::Test {
protected:
    void SetUp() override { TakeRecordedCalls(); }

    static bool Create(CEventHandle& event, const std::string& name, bool unique = false) {
        return event.Open(name.c_str(), NEW, 0666, 0, unique);
    }

    // Messages with level and code, one after the other.
    static std::string Log() {
        std::string text;
        for (const RecordedLine& line : TakeRecordedLines()) {
            EXPECT_EQ("CEventHandle", line.file);
            text += line.level + std::to_string(line.code) + " " + line.message + "|";
        }
        return text;
    }

    static void RecordLog() {
        CCMLibLogger::getInstance()->InitLibLogger("log", "owner", "module", RECORDING_LOGGER);
    }

    const std::string m_short = UniqueShortName();
    const std::string m_full = "K7Q3MZP2WD.RX.qvtrel/" + m_short;
    const std::string m_file = "/dev/shm/sem.K7Q3MZP2WD.RX.qvtrel%2F" + m_short;
};

TEST_F(Events, NamesHaveOneToFiveCharacters) {
    RecordLog();
    CEventHandle event;
    EXPECT_FALSE(event.Open(nullptr, 0));
    EXPECT_FALSE(event.Open(nullptr, NEW, 0666, 0, false));
    EXPECT_EQ("e0 invalid parameter.|", Log());
    for (const std::string& name : {std::string(), m_short + "x"}) {
        EXPECT_FALSE(Create(event, name));
        EXPECT_EQ("e0 pName is illegal parameter.|", Log());
    }
}

TEST_F(Events, AnExistingNameIsRefusedOrNumbered) {
    RecordLog();
    const std::string begin = "d0 begin sem_open(\"" + m_full + "\",";
    const std::string failed = " sem_open failed. name=" + m_full + "|";
    const std::string arguments = std::to_string(NEW) + ",438,0)\n|";
    CEventHandle first;
    CEventHandle second;
    CEventHandle third;
    EXPECT_FALSE(first.Open(m_short.c_str(), 0, 0666, 0, true));
    EXPECT_EQ(begin + "0,438,0)\n|e2" + failed, Log()) << "no other name is tried";
    ASSERT_TRUE(Create(first, m_short));
    EXPECT_EQ(begin + arguments, Log());
    EXPECT_FALSE(Create(second, m_short));
    EXPECT_EQ(begin + arguments + "d17 named samaphore exists. name=" + m_full + "|e17" + failed,
              Log());
    ASSERT_TRUE(Create(second, m_short, true));
    ASSERT_TRUE(Create(third, m_short, true));
    EXPECT_EQ(m_full + "1", second.GetName());
    EXPECT_EQ(m_full + "2", third.GetName());
}

TEST_F(Events, ThatAreNotOpenFail) {
    CEventHandle event;
    const auto expectFailures = [&] {
        EXPECT_EQ(WAIT_FAILED, event.Wait());
        EXPECT_EQ(WAIT_FAILED, event.TryWait());
        EXPECT_EQ(-1, event.Post());
    };
    expectFailures();
    ASSERT_TRUE(event.Open(m_short.c_str(), NEW, 0666, 1, false));
    EXPECT_EQ(WAIT_OBJECT_0, event.TryWait());
    event.Close();
    expectFailures();
    EXPECT_EQ(m_full, event.GetName());
}

TEST_F(Events, OpenedAnewGiveTheFirstNameBack) {
    CEventHandle event;
    ASSERT_TRUE(Create(event, m_short));
    ASSERT_TRUE(Create(event, UniqueShortName(1)));
    EXPECT_FALSE(CEventHandle().Open(m_full.c_str(), 0));
}

extern "C" void Interrupt(int) {}

// The threads of a timed wait take no signals, even those that are sent to all threads.
TEST_F(Events, OnlyAWaitWithoutTimeOutIsInterrupted) {
    CEventHandle event;
    ASSERT_TRUE(Create(event, m_short));
    struct sigaction action {};
    action.sa_handler = Interrupt;
    sigaction(SIGUSR1, &action, nullptr);
    std::atomic<bool> isOver = false;
    std::thread sender([&] {
        while (!isOver) {
            for (const auto& task : fs::directory_iterator("/proc/self/task")) {
                const auto id = std::stoi(task.path().filename().string());
                syscall(SYS_tgkill, getpid(), id, SIGUSR1);
            }
        }
    });
    EXPECT_EQ(WAIT_FAILED, event.Wait());
    EXPECT_EQ(WAIT_TIMEOUT, event.TimedWait(50));
    isOver = true;
    sender.join();
}

// A semaphore that happens to have the short name without the prefix is left alone.
TEST_F(Events, AreForAllUsersAndNotTakenForOtherSemaphores) {
    sem_t* other = sem_open(m_short.c_str(), O_CREAT, 0600, 0);
    const mode_t earlier = umask(0);
    void* event = CreateEvent(nullptr, false, false, m_short.c_str());
    umask(earlier);
    EXPECT_EQ(fs::perms(0666), fs::status(m_file).permissions());
    void* opened = OpenEvent(0, false, m_short.c_str());
    EXPECT_TRUE(SetEvent(opened));
    EXPECT_EQ(0, WaitForSingleObject(event, 0));
    CloseHandle(event);
    CloseHandle(opened);
    EXPECT_EQ(0, sem_unlink(m_short.c_str()));
    sem_close(other);
}

TEST_F(Events, OfTheWindowsKind) {
    void* event = CreateEvent(nullptr, true, true, m_short.c_str());
    ASSERT_NE(nullptr, event);
    EXPECT_EQ(nullptr, CreateEvent(nullptr, false, false, m_short.c_str()));
    EXPECT_EQ(258, WaitForSingleObject(event, 0)) << "starts unsignalled";
    void* const opened[] = {OpenEvent(0, false, m_short.c_str()),
                            OpenEvent(0, false, m_full.c_str())};
    for (void* other : opened) {
        ASSERT_NE(nullptr, other);
        EXPECT_TRUE(SetEvent(other));
        ResetEvent(event);
        EXPECT_EQ(0, WaitForSingleObject(event, 0xFFFFFFFF));
        EXPECT_EQ(258, WaitForSingleObject(event, 0)) << "one wait consumes it";
    }
    for (void* first : {opened[0], opened[1]}) {
        EXPECT_EQ(1, CloseHandle(first));
        EXPECT_EQ(nullptr, OpenEvent(0, false, m_short.c_str())) << "the name goes with the first";
    }
    EXPECT_TRUE(SetEvent(event));
    EXPECT_EQ(0, WaitForSingleObject(event, 0));
    EXPECT_EQ(1, CloseHandle(event));
    for (const char* name : {static_cast<const char*>(nullptr), ""}) {
        void* one = CreateEvent(nullptr, false, false, name);
        void* other = CreateEvent(nullptr, false, false, name);
        EXPECT_TRUE(SetEvent(one));
        EXPECT_EQ(258, WaitForSingleObject(other, 0));
        EXPECT_EQ(1, CloseHandle(one));
        EXPECT_EQ(1, CloseHandle(other));
        EXPECT_EQ(nullptr, OpenEvent(0, false, name));
    }
    EXPECT_EQ(0, CloseHandle(nullptr));
    EXPECT_FALSE(SetEvent(nullptr));
    EXPECT_EQ(-1, WaitForSingleObject(nullptr, 0));
}

TEST_F(Events, TwoProcessesLoseNone) {
    constexpr int COUNT = 20000;
    const std::string backName = UniqueShortName(1);
    void* there = CreateEvent(nullptr, false, false, m_short.c_str());
    void* back = CreateEvent(nullptr, false, false, backName.c_str());
    ASSERT_TRUE(there != nullptr && back != nullptr);
    ChildProcess other([&] {
        void* incoming = OpenEvent(0, false, m_short.c_str());
        void* outgoing = OpenEvent(0, false, backName.c_str());
        for (int i = 0; i < COUNT; ++i) {
            if (WaitForSingleObject(incoming, 0xFFFFFFFF) != 0 || !SetEvent(outgoing)) {
                return 1;
            }
        }
        return WaitForSingleObject(incoming, 0) == 258 ? 0 : 2;
    });
    for (int i = 0; i < COUNT; ++i) {
        ASSERT_TRUE(SetEvent(there));
    }
    for (int i = 0; i < COUNT; ++i) {
        ASSERT_EQ(0, WaitForSingleObject(back, 0xFFFFFFFF));
    }
    EXPECT_EQ(0, other.Wait());
    EXPECT_EQ(258, WaitForSingleObject(back, 0));
    CloseHandle(there);
    CloseHandle(back);
}

}  // namespace
