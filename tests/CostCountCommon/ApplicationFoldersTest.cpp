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

using Function = bool (*)(std::string*);

// The folder, or "none", which is also checked to leave the output alone.
std::string Ask(Function function) {
    std::string path = "earlier";
    if (function(&path)) {
        return path;
    }
    EXPECT_EQ("earlier", path);
    return "none";
}

TEST_F(ApplicationFolders, OfTheEnvironment) {
    const std::string home = getpwuid(getuid())->pw_dir;
    const struct {
        const char* dataHome;
        const char* home;
        const char* temporary;
        std::string expectedData;
        std::string expectedTemporary;
    } rows[] = {
        {"/data//", "/home/x", "/t/mp///", "/data", "/t/mp"},
        {nullptr, "/home/x/", nullptr, "/home/x/.local/share", "/tmp"},
        {"relative", "/", "relative", "/.local/share", "/tmp"},
        {"", "relative", "", home + "/.local/share", "/tmp"},
        {"/", "/home/x", "/", "/", "/"},
    };
    for (const auto& row : rows) {
        const ScopedVariable dataHome("XDG_DATA_HOME", row.dataHome);
        const ScopedVariable homeFolder("HOME", row.home);
        const ScopedVariable temporary("TMPDIR", row.temporary);
        EXPECT_EQ(row.expectedData, Ask(GetApplicationDataLocalPath));
        EXPECT_EQ(row.expectedTemporary, Ask(GetTempPath));
        const std::string group =
            (row.expectedData == "/" ? "" : row.expectedData) + "/K7Q3MZP2WD.RX.qvtrel";
        EXPECT_EQ(group, Ask(GetApplicationDataGroupContainerPath));
        EXPECT_EQ(group + "/Library/Application Support",
                  Ask(GetApplicationDataGroupContainerAppSupportPath));
        EXPECT_EQ("/Library/Application Support", Ask(GetApplicationDataPath));
    }
    EXPECT_EQ(0U, TakeRecordedCalls().size());
}

TEST_F(ApplicationFolders, FailuresAreLogged) {
    EXPECT_FALSE(GetApplicationDataPath(nullptr));
    EXPECT_FALSE(GetApplicationDataLocalPath(nullptr));
    EXPECT_FALSE(GetApplicationDataGroupContainerPath(nullptr));
    EXPECT_FALSE(GetApplicationDataGroupContainerAppSupportPath(nullptr));
    EXPECT_FALSE(GetTempPath(nullptr));
    const ScopedVariable dataHome("XDG_DATA_HOME", "/\xFF");
    const ScopedVariable temporary("TMPDIR", "/\xFF");
    for (const Function function :
         {GetApplicationDataLocalPath, GetApplicationDataGroupContainerPath,
          GetApplicationDataGroupContainerAppSupportPath, GetTempPath}) {
        EXPECT_EQ("none", Ask(function));
    }
    EXPECT_EQ((std::vector<RecordedLine>{
                  {"MacUtility", 114, 'e', 0, "invalid parameter."},
                  {"MacUtility", 212, 'e', 0, "invalid parameter."},
                  {"MacUtility", 130, 'e', 0, "UTF8String failed."},
                  {"MacUtility", 224, 'e', 0, "failed to get TemporaryDirectory path."},
              }),
              TakeRecordedLines());
}

TEST_F(ApplicationFolders, TildeStandsForAHomeFolder) {
    const ScopedVariable home("HOME", "/home/x/");
    const std::string root = getpwnam("root")->pw_dir;
    const struct {
        const char* path;
        std::string expected;
    } rows[] = {
        {"~", "/home/x"},
        {"~/a/~", "/home/x/a/~"},
        {"~root", root},
        {"~root/a", root + "/a"},
        {"~no-such-user/a", "~no-such-user/a"},
        {"/a/~", "/a/~"},
        {"", ""},
        {"~/\xFF", "earlier"},
    };
    for (const auto& row : rows) {
        std::string expanded = "earlier";
        PathToPathByExpandingTildePath(row.path, &expanded);
        EXPECT_EQ(row.expected, expanded) << row.path;
    }
    std::string expanded = "earlier";
    PathToPathByExpandingTildePath(nullptr, &expanded);
    PathToPathByExpandingTildePath("~", nullptr);
    EXPECT_EQ("earlier", expanded);
}

}  // namespace
