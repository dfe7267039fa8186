#include <gtest/gtest.h>
#include <unistd.h>

#include <climits>
#include <csignal>

#include "compatible/osFree.h"
#include "tests/support/Processes.h"

namespace {

TEST(Processes, ExistUntilTheyWereWaitedFor) {
    EXPECT_EQ(getpid(), GetCurrentProcessId());
    EXPECT_TRUE(ProcessExists(GetCurrentProcessId()));
    ChildProcess child([] { return 0; });
    const pid_t id = child.Id();
    EXPECT_TRUE(ProcessExists(id));
    ASSERT_EQ(0, child.Wait());
    for (const int noProcess : {id, -id, INT_MAX}) {
        EXPECT_FALSE(ProcessExists(noProcess)) << noProcess;
    }
}

TEST(Processes, ExistForOtherUsersToo) {
    if (getuid() != 0) {
        GTEST_SKIP() << "only root can become another user";
    }
    ChildProcess other(
        [] { return setuid(65534) == 0 && kill(1, 0) != 0 && ProcessExists(1) ? 0 : 1; });
    EXPECT_EQ(0, other.Wait());
}

}  // namespace
