#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <climits>
#include <thread>

#include "compatible/osFree.h"

namespace {

TEST(Processes, ExistUntilTheyWereWaitedFor) {
    EXPECT_EQ(getpid(), GetCurrentProcessId());
    EXPECT_TRUE(ProcessExists(GetCurrentProcessId()));
    EXPECT_TRUE(ProcessExists(1)) << "of another user";
    const pid_t child = fork();
    if (child == 0) {
        _exit(0);
    }
    EXPECT_TRUE(ProcessExists(child));
    ASSERT_EQ(child, waitpid(child, nullptr, 0));
    EXPECT_FALSE(ProcessExists(child));
    for (const int noProcess : {0, -1, -child, INT_MAX}) {
        EXPECT_FALSE(ProcessExists(noProcess)) << noProcess;
    }
}

TEST(Processes, ThreadsHaveIdentifiersOfTheirOwn) {
    unsigned long other = 0;
    std::thread([&] { other = GetCurrentThreadId(); }).join();
    EXPECT_NE(other, GetCurrentThreadId());
}

}  // namespace
