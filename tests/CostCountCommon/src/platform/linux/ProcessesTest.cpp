#include <gtest/gtest.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <string>
#include <vector>

#include "CostCountCommon/include/MacUtility.h"
#include "CostCountCommon/src/platform/Platform.h"
#include "tests/support/Environment.h"
#include "tests/support/Processes.h"
#include "tests/support/TempFolder.h"

namespace {

TEST(LaunchedProcesses, InheritNoSuppressedSignals) {
    const TempFolder folder;
    const ScopedVariable output("PROBE_OUTPUT", folder.Path("output").c_str());
    sigset_t blocked;
    sigemptyset(&blocked);
    sigaddset(&blocked, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &blocked, nullptr);
    signal(SIGPIPE, SIG_IGN);
    signal(SIGXFSZ, SIG_IGN);
    EXPECT_EQ(0, ExecuteProcess(PROCESS_PROBE, "argument"));
    EXPECT_EQ("1 0 0\nargument", ReadFile(folder.Path("output")));
    signal(SIGCHLD, SIG_IGN);
    EXPECT_EQ(-1, ExecuteProcess(PROCESS_PROBE, "ignored"));  // there is no status to wait for
    EXPECT_EQ("1 0 0\nignored", ReadFile(folder.Path("output")));
    signal(SIGCHLD, SIG_DFL);
}

TEST(LaunchedProcesses, FailForTheSystemsReason) {
    platform::LaunchFailure failure;
    EXPECT_EQ(-1, platform::Launch("/tmp", "", &failure));
    EXPECT_EQ("EACCES", failure.name);
    EXPECT_EQ("/tmp: Permission denied", failure.reason);
}

// "none" for a process that is not listed.
std::string CommandOf(pid_t id) {
    std::vector<platform::Process> processes;
    EXPECT_TRUE(platform::ListProcesses(&processes));
    const auto found = std::find_if(processes.begin(), processes.end(),
                                    [&](const auto& process) { return process.id == id; });
    return found != processes.end() ? found->command : "none";
}

TEST(ListedProcesses, HaveTheKernelsNamesUntilTheyEnd) {
    prctl(PR_SET_NAME, "a name: (of 16 ");
    const ChildProcess child(pause);
    EXPECT_EQ("a name: (of 16 ", CommandOf(child.Id()));
    kill(child.Id(), SIGKILL);
    siginfo_t ended{};
    ASSERT_EQ(0, waitid(P_PID, static_cast<id_t>(child.Id()), &ended, WEXITED | WNOWAIT));
    EXPECT_EQ("none", CommandOf(child.Id())) << "nobody has waited for it";
}

}  // namespace
