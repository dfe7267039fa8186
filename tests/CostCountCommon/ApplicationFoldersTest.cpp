#include <gtest/gtest.h>
#include <pwd.h>
#include <unistd.h>

#include <string>

#include "CostCountCommon/include/MacUtility.h"
#include "tests/support/Environment.h"
#include "tests/support/RecordingLogger.h"

namespace {

class ApplicationFolders : public testing::Test {
protected:
    void SetUp() override {
        CCMLibLogger::getInstance()->InitLibLogger("n", "o", "m", RECORDING_LOGGER);
        TakeRecordedCalls();
    }
};

TEST_F(ApplicationFolders, AreAbsolute) {
    std::string folder;
    EXPECT_TRUE(GetApplicationDataPath(&folder));
    EXPECT_EQ("/Library/Application Support", folder);
    for (auto* const function : {GetApplicationDataLocalPath, GetTempPath}) {
        EXPECT_TRUE(function(&folder));
        EXPECT_TRUE(folder.starts_with('/') && !folder.ends_with('/')) << folder;
    }
    std::string support;
    EXPECT_TRUE(GetApplicationDataGroupContainerPath(&folder));
    EXPECT_TRUE(folder.ends_with("/K7Q3MZP2WD.RX.qvtrel")) << folder;
    EXPECT_TRUE(GetApplicationDataGroupContainerAppSupportPath(&support));
    EXPECT_EQ(folder + "/Library/Application Support", support);
}

TEST_F(ApplicationFolders, NullArgumentsGiveFalse) {
    for (auto* const function :
         {GetApplicationDataPath, GetApplicationDataLocalPath, GetApplicationDataGroupContainerPath,
          GetApplicationDataGroupContainerAppSupportPath, GetTempPath}) {
        EXPECT_FALSE(function(nullptr));
    }
    EXPECT_EQ((std::vector<RecordedLine>{
                  {"MacUtility", 114, 'e', 0, "invalid parameter."},
                  {"MacUtility", 212, 'e', 0, "invalid parameter."},
              }),
              TakeRecordedLines());
}

TEST_F(ApplicationFolders, TildeStandsForAHomeFolder) {
    const std::string own = getpwuid(getuid())->pw_dir;
    const std::string root = getpwnam("root")->pw_dir;
    const ScopedVariable home("HOME", own.c_str());
    const struct {
        const char* path;
        std::string expected;
    } rows[] = {
        {"~", own},
        {"~/a/~", own + "/a/~"},
        {"~root/a", root + "/a"},
        {"~no-such-user/a", "~no-such-user/a"},
        {"/a/~", "/a/~"},
        {"~/\xFF", "earlier"},
    };
    for (const auto& row : rows) {
        std::string expanded = "earlier";
        PathToPathByExpandingTildePath(row.path, &expanded);
        EXPECT_EQ(row.expected, expanded) << row.path;
    }
    PathToPathByExpandingTildePath(nullptr, nullptr);
}

}  // namespace
