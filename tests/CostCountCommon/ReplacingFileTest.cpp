#include "CostCountCommon/src/ReplacingFile.h"

#include <gtest/gtest.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>

#include <cerrno>
#include <filesystem>
#include <iterator>

#include "tests/support/TempFolder.h"

namespace {

namespace fs = std::filesystem;

using Placement = ReplacingFile::Placement;

int EntriesOf(const TempFolder& folder) {
    return static_cast<int>(std::distance(fs::directory_iterator(folder.Path()), {}));
}

bool Place(const std::string& target, Placement placement) {
    ReplacingFile file;
    return file.Create(target, placement) && file.Write("new", 3) && file.Commit();
}

// From now on this process finds hard links as unknown as on a file system without them.
bool RefuseHardLinks() {
    struct sock_filter program[] = {
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(struct seccomp_data, nr)),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, __NR_linkat, 0, 1),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | EPERM),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
    };
    const struct sock_fprog filter = {std::size(program), program};
    return prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
           prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &filter) == 0;
}

// Whether exclusive files take only free names; `target` appears while the second is written.
std::string ExclusiveFault(const TempFolder& folder) {
    const std::string free = folder.Path("free");
    const std::string target = folder.Path("target");
    if (!Place(free, Placement::EXCLUSIVE) || ReadFile(free) != "new") {
        return "the free name was not taken";
    }
    ReplacingFile late;
    if (!late.Create(target, Placement::EXCLUSIVE) || !late.Write("late", 4)) {
        return "no temporary file";
    }
    WriteFile(target, "other");
    if (late.Commit() || errno != EEXIST) {
        return "the commit did not fail as it should";
    }
    if (Place(target, Placement::EXCLUSIVE) || errno != EEXIST) {
        return "an existing target was accepted";
    }
    return ReadFile(target) == "other" ? "" : "the other file was replaced";
}

TEST(ReplacingFile, TakesOnlyFreeNamesWhenExclusive) {
    const TempFolder folder;
    EXPECT_EQ("", ExclusiveFault(folder));
    EXPECT_EQ(2, EntriesOf(folder));
}

TEST(ReplacingFile, TakesOnlyFreeNamesWhereThereAreNoHardLinks) {
    const TempFolder folder;
    const pid_t child = fork();
    if (child == 0) {
        if (!RefuseHardLinks() || link("/nonexistent", "/nonexistent") == 0) {
            _exit(2);
        }
        _exit(ExclusiveFault(folder).empty() ? 0 : 1);
    }
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_EQ(0, status);
    EXPECT_EQ(2, EntriesOf(folder));
}

TEST(ReplacingFile, FollowsLinksAlsoToNothing) {
    const TempFolder folder;
    fs::create_directory(folder.Path("sub"));
    fs::create_symlink("sub/second", folder.Path("first"));
    fs::create_symlink("target", folder.Path("sub/second"));
    for (int round = 0; round < 2; ++round) {  // the target is new, then exists
        EXPECT_TRUE(Place(folder.Path("first"), Placement::REPLACE));
        EXPECT_EQ("new", ReadFile(folder.Path("sub/target")));
        WriteFile(folder.Path("sub/target"), "earlier");
    }
    fs::create_symlink("loop", folder.Path("loop"));
    EXPECT_FALSE(Place(folder.Path("loop"), Placement::REPLACE));
    EXPECT_EQ(ELOOP, errno);
}

TEST(ReplacingFile, KeepsTheReasonAndLeavesNothing) {
    const TempFolder folder;
    fs::create_directory(folder.Path("folder"));
    const struct {
        std::string target;
        int reason;
    } CASES[] = {{"", ENOENT},
                 {folder.Path("none/target"), ENOENT},
                 {folder.Path("folder"), EISDIR},
                 {folder.Path(std::string(256, 'n')), ENAMETOOLONG}};
    for (const auto& expected : CASES) {
        EXPECT_FALSE(Place(expected.target, Placement::REPLACE)) << expected.target;
        EXPECT_EQ(expected.reason, errno) << expected.target;
    }
    EXPECT_EQ(1, EntriesOf(folder));
    EXPECT_TRUE(Place(folder.Path(std::string(255, 'n')), Placement::REPLACE));
    EXPECT_FALSE(ReplacingFile().Commit());
}

}  // namespace
