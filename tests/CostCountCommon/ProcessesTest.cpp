#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <string>

#include "CostCountCommon/include/MacUtility.h"
#include "tests/support/Environment.h"
#include "tests/support/RecordingLogger.h"
#include "tests/support/TempFolder.h"

namespace {

namespace fs = std::filesystem;

class Processes : public testing::Test {
protected:
    void SetUp() override {
        CCMLibLogger::getInstance()->InitLibLogger("n", "o", "m", RECORDING_LOGGER);
        TakeRecordedCalls();
    }

    TempFolder m_folder;
    std::string m_output = m_folder.Path("output");
    ScopedVariable m_probeOutput{"PROBE_OUTPUT", m_output.c_str()};
};

// A child that is gone at the end of the scope.
struct Child {
    explicit Child(pid_t process) : id(process) {}
    ~Child() {
        if (id > 0) {
            kill(id, SIGKILL);
            waitpid(id, nullptr, 0);
        }
    }
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;

    const pid_t id;
};

TEST_F(Processes, GetTheArgumentUntouchedAndNothingElse) {
    const int descriptor = open("/dev/null", O_RDONLY);  // not closed on exec
    ASSERT_GE(descriptor, 0);
    sigset_t blocked;
    sigemptyset(&blocked);
    sigaddset(&blocked, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &blocked, nullptr);
    signal(SIGPIPE, SIG_IGN);
    signal(SIGXFSZ, SIG_IGN);
    for (const std::string& argument :
         {std::string(), std::string(" two  words "), std::string("\"'\\ $HOME `id` * ; #\n"),
          std::string("-n"), std::string("Stra\u00DFe \U0001F5A8"), std::string(100000, 'x')}) {
        EXPECT_EQ(0, ExecuteProcess(PROCESS_PROBE, argument));
        EXPECT_EQ("1 0 0\n" + argument, ReadFile(m_output));
    }
    signal(SIGCHLD, SIG_IGN);
    EXPECT_EQ(-1, ExecuteProcess(PROCESS_PROBE, "ignored"));  // there is no status to wait for
    EXPECT_EQ("1 0 0\nignored", ReadFile(m_output));
    signal(SIGCHLD, SIG_DFL);
    close(descriptor);
}

TEST_F(Processes, ReturnTheirExitStatus) {
    const struct {
        const char* argument;
        int expected;
    } rows[] = {{"exit 0", 0}, {"exit 3", 3}, {"exit 255", 255}, {"end by signal", 0}};
    for (const auto& row : rows) {
        EXPECT_EQ(row.expected, ExecuteProcess(PROCESS_PROBE, row.argument)) << row.argument;
    }
    const pid_t child = CreateProcessAsUser(PROCESS_PROBE, "exit 3");
    ASSERT_GT(child, 0);
    int status = 0;
    ASSERT_EQ(child, waitpid(child, &status, 0));
    EXPECT_EQ(3, WEXITSTATUS(status));
    EXPECT_EQ(0U, TakeRecordedCalls().size());
}

TEST_F(Processes, AreWaitedForThroughSignals) {
    struct sigaction action {};
    action.sa_handler = [](int) {};
    sigaction(SIGALRM, &action, nullptr);  // without SA_RESTART
    const itimerval every{{0, 5000}, {0, 5000}};
    setitimer(ITIMER_REAL, &every, nullptr);
    EXPECT_EQ(3, ExecuteProcess(PROCESS_PROBE, "linger"));
    const itimerval never{};
    setitimer(ITIMER_REAL, &never, nullptr);
}

TEST_F(Processes, ThatCannotBeStartedAreLogged) {
    const std::string missing = m_folder.Path("missing");
    const std::string launch = "launch faild. exception name=";
    const std::string notText = "modulePath or params is nil.";
    const struct {
        std::string path;
        std::string argument;
        unsigned int createLine;
        unsigned int executeLine;
        std::string message;
    } rows[] = {
        {missing, "", 291, 332,
         launch + "ENOENT reason=" + missing + ": No such file or directory"},
        {m_folder.Path(), "", 291, 332,
         launch + "EACCES reason=" + m_folder.Path() + ": Permission denied"},
        {"", "", 291, 332, launch + "ENOENT reason=: No such file or directory"},
        {"true", "", 291, 332, launch + "ENOENT reason=true: No such file or directory"},
        {"/\xFF", "", 276, 315, notText},
        {PROCESS_PROBE, "\xC3", 276, 315, notText},
        {PROCESS_PROBE, std::string("a\0b", 3), 276, 315, notText},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(-1, CreateProcessAsUser(row.path, row.argument));
        EXPECT_EQ(-1, ExecuteProcess(row.path, row.argument));
        EXPECT_EQ((std::vector<RecordedLine>{{"MacUtility", row.createLine, 'e', 0, row.message},
                                             {"MacUtility", row.executeLine, 'e', 0, row.message}}),
                  TakeRecordedLines());
    }
}

// A child of the user with the command name of the service, as the kernel keeps it.
pid_t StartNamedChild(uid_t user) {
    int ready[2] = {};
    if (pipe(ready) != 0) {
        return -1;
    }
    const pid_t child = fork();
    if (child == 0) {
        if (setuid(user) != 0 || prctl(PR_SET_NAME, "qvtrelBnt") != 0 ||
            write(ready[1], "1", 1) != 1) {
            _exit(1);
        }
        for (;;) {
            pause();
        }
    }
    close(ready[1]);
    char byte = 0;
    const bool isReady = read(ready[0], &byte, 1) == 1;
    close(ready[0]);
    return isReady ? child : -1;
}

// In one test, because each would find the processes of another one.
TEST_F(Processes, TheServiceIsFoundByItsName) {
    const ScopedVariable contents("TALLYQUIST_CONTENTS", m_folder.Path().c_str());
    const auto isFound = [](const Child& child) {
        PROCESS_INFORMATION info{};
        return CheckStartedBNT(&info) && info.dwProcessId == static_cast<uint32_t>(child.id);
    };
    {
        const std::string tool = m_folder.Path("QVTRELbnt");
        fs::copy_file(PROCESS_PROBE, tool);
        const Child service(CreateProcessAsUser(tool, "wait"));
        ASSERT_GT(service.id, 0);
        EXPECT_TRUE(isFound(service));
        EXPECT_FALSE(CheckStartedBNT(nullptr));
        EXPECT_TRUE(CheckConnectBNT(tool));
        EXPECT_FALSE(CheckConnectBNT(m_folder.Path("missing")));

        kill(service.id, SIGKILL);
        siginfo_t ended{};
        ASSERT_EQ(0, waitid(P_PID, static_cast<id_t>(service.id), &ended, WEXITED | WNOWAIT));
        EXPECT_FALSE(isFound(service)) << "a process that ended";
        EXPECT_FALSE(CheckConnectBNT(tool));
    }
    {
        const Child own(StartNamedChild(getuid()));
        ASSERT_GT(own.id, 0);
        EXPECT_TRUE(isFound(own));
    }
    if (getuid() != 0) {
        GTEST_SKIP() << "only root can start a process of another user";
    }
    const Child others(StartNamedChild(65534));
    ASSERT_GT(others.id, 0);
    EXPECT_FALSE(isFound(others));
}

}  // namespace
