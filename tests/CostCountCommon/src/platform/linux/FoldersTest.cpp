#include <gtest/gtest.h>
#include <locale.h>
#include <pwd.h>
#include <unistd.h>

#include <string>
#include <vector>

#include "CostCountCommon/include/MacUtility.h"
#include "CostCountCommon/src/platform/Platform.h"
#include "tests/support/Environment.h"
#include "tests/support/RecordingLogger.h"
#include "tests/support/TempFolder.h"

namespace {

TEST(Folders, AreThoseOfTheEnvironment) {
    const std::string home = getpwuid(getuid())->pw_dir;
    const struct {
        const char* variables[3];  // XDG_DATA_HOME, HOME, TMPDIR
        std::string data;
        std::string home;
        std::string temporary;
    } rows[] = {
        {{"/data//", "/home/x", "/t/mp///"}, "/data", "/home/x", "/t/mp"},
        {{nullptr, "/home/x/", nullptr}, "/home/x/.local/share", "/home/x", "/tmp"},
        {{"relative", "/", "relative"}, "/.local/share", "/", "/tmp"},
        {{"", "relative", ""}, home + "/.local/share", home, "/tmp"},
    };
    for (const auto& row : rows) {
        const ScopedVariable dataHome("XDG_DATA_HOME", row.variables[0]);
        const ScopedVariable homeFolder("HOME", row.variables[1]);
        const ScopedVariable temporary("TMPDIR", row.variables[2]);
        EXPECT_EQ(row.data, platform::ApplicationSupportFolder());
        EXPECT_EQ(row.data + "/g.r", platform::GroupContainerFolder("g.r"));
        EXPECT_EQ(row.home, platform::ExpandTilde("~"));
        EXPECT_EQ(row.temporary, platform::TemporaryFolder());
    }
}

TEST(Folders, ThatAreNotUtf8AreNone) {
    CCMLibLogger::getInstance()->InitLibLogger("n", "o", "m", RECORDING_LOGGER);
    TakeRecordedCalls();
    const ScopedVariable dataHome("XDG_DATA_HOME", "/\xFF");
    const ScopedVariable temporary("TMPDIR", "/\xFF");
    for (auto* const function : {GetApplicationDataLocalPath, GetApplicationDataGroupContainerPath,
                                 GetApplicationDataGroupContainerAppSupportPath, GetTempPath}) {
        std::string path = "earlier";
        EXPECT_FALSE(function(&path));
        EXPECT_EQ("earlier", path);
    }
    EXPECT_EQ((std::vector<RecordedLine>{
                  {"MacUtility", 130, 'e', 0, "UTF8String failed."},
                  {"MacUtility", 224, 'e', 0, "failed to get TemporaryDirectory path."},
              }),
              TakeRecordedLines());
}

TEST(Folders, AreListedWithoutNamesThatAreNotUtf8) {
    const TempFolder folder;
    WriteFile(folder.Path("\u00E9"), "");
    WriteFile(folder.Path("\xFF.cfg"), "");
    std::vector<std::string> names;
    MacGetFileList(folder.Path("*"), names);
    EXPECT_EQ(std::vector<std::string>{"\u00E9"}, names);
    EXPECT_EQ(LC_GLOBAL_LOCALE, uselocale(nullptr)) << "the thread's locale is as it was";
}

}  // namespace
