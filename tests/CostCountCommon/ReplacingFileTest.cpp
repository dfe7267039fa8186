// Files that appear whole, as far as copies do not show it: names that must be free, and reasons.
#include "CostCountCommon/src/ReplacingFile.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <iterator>

#include "tests/support/Processes.h"
#include "tests/support/RefusedCalls.h"
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

// The target appears while the second file is written.
TEST(ReplacingFile, TakesOnlyFreeNamesWhenExclusive) {
    for (const bool hasHardLinks : {true, false}) {
        const TempFolder folder;
        const std::string free = folder.Path("free");
        const std::string target = folder.Path("target");
        ChildProcess child([&] {
            if (!hasHardLinks && !RefuseCalls(HARD_LINKS, EPERM)) {
                return 2;
            }
            EXPECT_TRUE(Place(free, Placement::EXCLUSIVE));
            ReplacingFile late;
            EXPECT_TRUE(late.Create(target, Placement::EXCLUSIVE) && late.Write("late", 4));
            WriteFile(target, "other");
            EXPECT_FALSE(late.Commit());
            EXPECT_EQ(EEXIST, errno);
            EXPECT_FALSE(Place(target, Placement::EXCLUSIVE));
            EXPECT_EQ(EEXIST, errno);
            return testing::Test::HasFailure() ? 1 : 0;
        });
        EXPECT_EQ(0, child.Wait());
        EXPECT_EQ("new", ReadFile(free));
        EXPECT_EQ("other", ReadFile(target));
        EXPECT_EQ(2, EntriesOf(folder));
    }
}

TEST(ReplacingFile, KeepsTheReasonAndLeavesNothing) {
    const TempFolder folder;
    fs::create_directory(folder.Path("folder"));
    fs::create_symlink("loop", folder.Path("loop"));
    const struct {
        std::string target;
        int reason;
    } CASES[] = {{"", ENOENT},
                 {folder.Path("none/target"), ENOENT},
                 {folder.Path("folder"), EISDIR},
                 {folder.Path("loop"), ELOOP},
                 {folder.Path(std::string(256, 'n')), ENAMETOOLONG}};
    for (const auto& expected : CASES) {
        EXPECT_FALSE(Place(expected.target, Placement::REPLACE)) << expected.target;
        EXPECT_EQ(expected.reason, errno) << expected.target;
    }
    EXPECT_FALSE(ReplacingFile().Commit());
    EXPECT_EQ(2, EntriesOf(folder));

    fs::create_symlink("folder/second", folder.Path("first"));
    fs::create_symlink("target", folder.Path("folder/second"));
    EXPECT_TRUE(Place(folder.Path("first"), Placement::REPLACE));
    EXPECT_EQ("new", ReadFile(folder.Path("folder/target"))) << "links are followed";
}

}  // namespace
