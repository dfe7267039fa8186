#include <gtest/gtest.h>
#include <objc/runtime.h>
#include <pwd.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <new>
#include <string>
#include <vector>

#include "CostCountCommon/src/platform/Platform.h"
#include "tests/support/TempFolder.h"

// GNUstep's count of objects; its header is not C++.
extern "C" signed char GSDebugAllocationActive(signed char isActive);
extern "C" Class* GSDebugAllocationClassList();
extern "C" int GSDebugAllocationCount(Class objects);

namespace {

constexpr char PROCESS_PROBE[] = CHECK_FOLDER "/process_probe";
using Names = std::vector<std::string>;

TEST(Foundation, FoldersOfTheUser) {
    EXPECT_EQ("/x/Stra\u00DFe", platform::ApplicationSupportFolder());
    EXPECT_EQ("/x/G.r", platform::GroupContainerFolder("G.r"));
    EXPECT_EQ("", platform::GroupContainerFolder("no such group"));
    EXPECT_EQ("", platform::GroupContainerFolder("\xFF"));
    EXPECT_EQ(0, access(platform::TemporaryFolder().c_str(), W_OK));
}

TEST(FoundationWithoutTheCalls, HasNoGroupContainer) {
    EXPECT_EQ("", platform::GroupContainerFolder("G.r"));
}

TEST(Foundation, TildeStandsForAHomeFolder) {
    const std::string home = getpwuid(getuid())->pw_dir;  // HOME is not asked
    const Names rows[] = {{"~", home},
                          {"~/a/~/", home + "/a/~"},
                          {"~root/\u00E9", std::string(getpwnam("root")->pw_dir) + "/\u00E9"},
                          {"~no-such-user/a/", "~no-such-user/a/"},
                          {"/a//~/", "/a//~/"},
                          {"~/\xFF", "~/\xFF"}};
    for (const auto& row : rows) {
        EXPECT_EQ(row[1], platform::ExpandTilde(row[0]));
    }
}

int ExitCodeOf(const std::string& argument) {
    platform::LaunchFailure failure;
    const pid_t process = platform::Launch(PROCESS_PROBE, argument, &failure);
    int status = 0;
    return process > 0 && waitpid(process, &status, 0) == process ? WEXITSTATUS(status) : -1;
}

TEST(Foundation, LaunchesWithOneArgument) {
    const int notInherited = dup(STDIN_FILENO);
    for (const std::string argument : {"", " two  words\n\n", "\"'\\ $HOME `id` *", "\u00E9"}) {
        EXPECT_EQ(0, ExitCodeOf(argument));
        EXPECT_EQ("1 0 0\n" + argument, ReadFile(CHECK_FOLDER "/probe-output"));
    }
    close(notInherited);
    EXPECT_EQ(255, ExitCodeOf("exit 255"));
    EXPECT_EQ(3, ExitCodeOf("linger"));
}

TEST(Foundation, ListsWhatMatches) {
    const TempFolder folder;
    for (const char* name : {"xcfg", "a.cfg.bak", "B", ".cfg", "\u00E9", "\xFF.cfg"}) {
        WriteFile(folder.Path(name), "");
    }
    const Names all{".cfg", "B", "a.cfg.bak", "xcfg", "\u00E9"};
    Names names;
    EXPECT_TRUE(platform::ListFolder(folder.Path(), &names));
    EXPECT_EQ(all, names);
    for (const auto& path : {folder.Path("missing"), folder.Path("B"), std::string("/\xFF")}) {
        EXPECT_FALSE(platform::ListFolder(path, &names));
    }
    for (const char* broken : {"[", "(", "\xFF", "(a{1,255}){1,255}"}) {
        EXPECT_FALSE(platform::KeepMatching(broken, &names)) << broken;
    }
    EXPECT_EQ(all, names);
    EXPECT_TRUE(platform::KeepMatching("^[^B]$|.cfg|b", &names));
    EXPECT_EQ((Names{".cfg", "a.cfg.bak", "xcfg", "\u00E9"}), names);
}

int LiveObjects() {
    int count = 0;
    Class* const classes = GSDebugAllocationClassList();
    for (Class* one = classes; *one != nullptr; ++one) {
        count += GSDebugAllocationCount(*one);
    }
    std::free(classes);
    return count;
}

id ThrowBadAlloc(id, SEL, ...) {
    throw std::bad_alloc();
}

TEST(Foundation, FailuresAndExceptionsLeaveNoObjectsBehind) {
    const TempFolder folder;
    WriteFile(folder.Path("data"), "#!/bin/sh\n");  // without permission to execute
    const Names paths{folder.Path("missing"), folder.Path("data"), "/\xFF"};
    const Class tasks = static_cast<Class>(objc_getClass("NSConcreteUnixTask"));
    const SEL launch = sel_registerName("launch");
    const auto callAll = [&] {
        for (const auto& path : paths) {
            platform::LaunchFailure failure;
            EXPECT_EQ(-1, platform::Launch(path, "", &failure));
            EXPECT_EQ("NSInvalidArgumentException", failure.name);
            EXPECT_NE("", failure.reason);
        }
        EXPECT_EQ(-1, ExitCodeOf("\xC3"));
        const IMP original = class_replaceMethod(tasks, launch, ThrowBadAlloc, "v@:");
        EXPECT_THROW((void)platform::Launch("/x", "", nullptr), std::bad_alloc);
        class_replaceMethod(tasks, launch, original, "v@:");
        Names names{"a"};
        EXPECT_FALSE(platform::KeepMatching("(", &names));
        EXPECT_TRUE(platform::ListFolder(folder.Path(), &names));
        EXPECT_TRUE(platform::KeepMatching(".", &names));
        EXPECT_EQ("/x/G.r", platform::GroupContainerFolder("G.r"));
        EXPECT_NE(platform::ApplicationSupportFolder(), platform::TemporaryFolder());
        EXPECT_NE("~", platform::ExpandTilde("~"));
    };
    GSDebugAllocationActive(1);
    callAll();
    const int before = LiveObjects();
    for (int i = 0; i < 10000 && !HasFailure(); ++i) {
        callAll();
    }
    EXPECT_EQ(before, LiveObjects());
}

}  // namespace
