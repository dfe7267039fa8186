#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <string>

#include "CostCountCommon/include/MacUtility.h"
#include "CostCountCommon/src/platform/Platform.h"
#include "tests/support/Environment.h"
#include "tests/support/Processes.h"
#include "tests/support/RecordingLogger.h"
#include "tests/support/TempFolder.h"

namespace {

namespace fs = std::filesystem;
using namespace std::string_literals;

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

TEST_F(Processes, GetTheArgumentUntouchedAndNothingElse) {
    const int descriptor = open("/dev/null", O_RDONLY);  // not closed on exec
    ASSERT_GE(descriptor, 0);
    for (const auto& argument : {""s, " two  words "s, "\"'\\ $HOME `id` * ; #\n"s, "-n"s,
                                 "Stra\u00DFe \U0001F5A8"s, std::string(100000, 'x')}) {
        EXPECT_EQ(0, ExecuteProcess(PROCESS_PROBE, argument));
        const std::string start = ReadFile(m_output);
        EXPECT_EQ("1 0 ", start.substr(0, 4)) << "one argument, no descriptor";
        EXPECT_EQ("\n" + argument, start.substr(std::min(start.find('\n'), start.size())));
    }
    close(descriptor);
}

TEST_F(Processes, ReturnTheirExitStatus) {
    struct sigaction action {};
    action.sa_handler = [](int) {};
    sigaction(SIGALRM, &action, nullptr);  // without SA_RESTART
    const itimerval every{{0, 5000}, {0, 5000}};
    setitimer(ITIMER_REAL, &every, nullptr);
    EXPECT_EQ(3, ExecuteProcess(PROCESS_PROBE, "linger")) << "waited for through signals";
    const itimerval never{};
    setitimer(ITIMER_REAL, &never, nullptr);
    EXPECT_EQ(255, ExecuteProcess(PROCESS_PROBE, "exit 255"));
    EXPECT_EQ(0, ExecuteProcess(PROCESS_PROBE, "end by signal"));
    const pid_t child = CreateProcessAsUser(PROCESS_PROBE, "exit 3");
    ASSERT_GT(child, 0);
    int status = 0;
    ASSERT_EQ(child, waitpid(child, &status, 0));
    EXPECT_EQ(3, WEXITSTATUS(status));
    EXPECT_EQ(0U, TakeRecordedCalls().size());
}

TEST_F(Processes, ThatCannotBeStartedAreLogged) {
    const auto expectLines = [](const std::string& path, const std::string& argument,
                                unsigned int createLine, unsigned int executeLine,
                                const std::string& message) {
        EXPECT_EQ(-1, CreateProcessAsUser(path, argument));
        EXPECT_EQ(-1, ExecuteProcess(path, argument));
        EXPECT_EQ((std::vector<RecordedLine>{{"MacUtility", createLine, 'e', 0, message},
                                             {"MacUtility", executeLine, 'e', 0, message}}),
                  TakeRecordedLines());
    };
    for (const auto& path : {m_folder.Path("missing"), m_folder.Path(), std::string(), "true"s}) {
        platform::LaunchFailure failure;  // in the system's own words
        EXPECT_EQ(-1, platform::Launch(path, "", &failure));
        EXPECT_TRUE(!failure.name.empty() && !failure.reason.empty()) << path;
        expectLines(path, "", 291, 332,
                    std::string("launch faild. exception name=")
                        .append(failure.name)
                        .append(" reason=")
                        .append(failure.reason));
    }
    expectLines("/\xFF", "", 276, 315, "modulePath or params is nil.");
    expectLines(PROCESS_PROBE, "\xC3", 276, 315, "modulePath or params is nil.");
    expectLines(PROCESS_PROBE, "a\0b"s, 276, 315, "modulePath or params is nil.");
}

// In one test, because each would find the processes of another one.
TEST_F(Processes, TheServiceIsFoundByItsName) {
    ASSERT_EQ(0, mkfifo(m_output.c_str(), 0600));  // whoever reads it waits for the probe
    std::string tool;
    const auto run = [&](const char* argument) {
        return [&tool, this, argument] {
            execl(tool.c_str(), tool.c_str(), argument, nullptr);
            WriteFile(m_output, "");
            return 1;
        };
    };
    const auto isFound = [](const ChildProcess& child) {
        PROCESS_INFORMATION info{};
        return CheckStartedBNT(&info) && info.dwProcessId == static_cast<uint32_t>(child.Id());
    };
    for (const char* name : {"qvtrelBnt", "QVTRELbnt"}) {
        tool = m_folder.Path(name);
        fs::copy_file(PROCESS_PROBE, tool);
        {
            const ChildProcess service(run("wait"));
            ASSERT_TRUE(ReadFile(m_output).ends_with("wait"));
            EXPECT_TRUE(isFound(service));
            EXPECT_TRUE(CheckConnectBNT(tool));
            EXPECT_FALSE(CheckConnectBNT(m_folder.Path("missing")));
        }
        EXPECT_FALSE(CheckConnectBNT(tool)) << "the service has ended";
        EXPECT_FALSE(CheckStartedBNT(nullptr));
        if (getuid() == 0) {  // only root can start a process of another user
            const ChildProcess others(run("wait as 65534"));
            ASSERT_TRUE(ReadFile(m_output).ends_with("wait as 65534"));
            EXPECT_FALSE(isFound(others));
        }
        fs::remove(tool);  // where names that differ in case are the same
    }
}

}  // namespace
