#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>

#include "compatible/osFree.h"
#include "tests/support/TempFolder.h"

namespace {

namespace fs = std::filesystem;

TEST(OpenFile, TakesTheModeUpToACommaWithoutBlanks) {
    const TempFolder folder;
    const std::string path = folder.Path("file");
    struct {
        const char* mode;
        const char* after;  // the contents when "new" was written to a file that held "old"
    } const CASES[] = {{"w", "new"},
                       {"w, ccs=UTF-8", "new"},
                       {" a ,x", "oldnew"},
                       {"r + b", "new"},
                       {"a b + , w", "oldnew"},
                       {"w + b ", "new"},
                       {"abcdefghij", "oldnew"},
                       {"wbbbx", "new"}};  // uncut, x would refuse an existing file
    for (const auto& expected : CASES) {
        WriteFile(path, "old");
        FILE* file = nullptr;
        ASSERT_EQ(0, u_fopen(&file, path.c_str(), expected.mode)) << expected.mode;
        std::fputs("new", file);
        std::fclose(file);
        EXPECT_EQ(expected.after, ReadFile(path)) << expected.mode;
    }
}

TEST(OpenFile, GivesTheReasonOfAFailure) {
    const TempFolder folder;
    FILE* file = stdin;
    EXPECT_EQ(ENOENT, u_fopen(&file, folder.Path("none").c_str(), "r"));
    EXPECT_EQ(nullptr, file);
    EXPECT_EQ(EISDIR, u_fopen(&file, folder.Path().c_str(), "w"));
    EXPECT_EQ(EINVAL, u_fopen(&file, folder.Path("none").c_str(), ",r"));
    EXPECT_EQ(EINVAL, u_fopen(&file, nullptr, "r"));
    EXPECT_EQ(EINVAL, u_fopen(&file, "x", nullptr));
    EXPECT_EQ(EINVAL, u_fopen(nullptr, "x", "r"));
}

TEST(CreatingFolders, CreatesEveryMissingLevel) {
    const TempFolder folder;
    fs::create_directory(folder.Path("there"));
    fs::create_directory_symlink(folder.Path("there"), folder.Path("link"));
    const mode_t earlier = umask(027);
    for (const char* name : {"a/b/c", "a/b/c", "a//b/d/", "x\\y\\z", "link/new"}) {
        EXPECT_TRUE(CreateFolder(folder.Path(name).c_str())) << name;
    }
    umask(earlier);
    for (const char* name : {"a", "a/b", "a/b/c", "a/b/d", "x/y/z", "there/new"}) {
        EXPECT_EQ(fs::perms(0750), fs::status(folder.Path(name)).permissions()) << name;
    }
    EXPECT_EQ(0, SHCreateDirectory(nullptr, "/"));
}

TEST(CreatingFolders, FailsWhereALevelIsNoFolder) {
    const TempFolder folder;
    WriteFile(folder.Path("file"), "");
    fs::create_symlink(folder.Path("none"), folder.Path("dangling"));
    for (const std::string& path :
         {folder.Path("file"), folder.Path("file/below"), folder.Path("dangling/below"),
          folder.Path(std::string(300, 'x')), std::string("/proc/none/below"), std::string()}) {
        EXPECT_FALSE(CreateFolder(path.c_str())) << path;
        EXPECT_EQ(-1, SHCreateDirectory(nullptr, path.c_str())) << path;
    }
    EXPECT_FALSE(CreateFolder(nullptr));
    EXPECT_FALSE(fs::exists(folder.Path("none")));
}

TEST(Looking, FollowsLinks) {
    const TempFolder folder;
    WriteFile(folder.Path("file"), std::string(5000, 'x'));
    fs::create_directory(folder.Path("folder"));
    fs::create_symlink(folder.Path("file"), folder.Path("link"));
    fs::create_symlink(folder.Path("folder"), folder.Path("folderLink"));
    fs::create_symlink(folder.Path("none"), folder.Path("dangling"));
    mkfifo(folder.Path("pipe").c_str(), 0600);
    struct {
        const char* name;
        bool exists;
        bool isDirectory;
        long long size;
    } const CASES[] = {{"file", true, false, 5000},   {"link", true, false, 5000},
                       {"folder", true, true, 0},     {"folderLink", true, true, 0},
                       {"dangling", false, false, 0}, {"none", false, false, 0},
                       {"pipe", true, false, 0}};
    for (const auto& expected : CASES) {
        const std::string path = folder.Path(expected.name);
        bool isDirectory = !expected.isDirectory;
        EXPECT_EQ(expected.exists, IsFileExist(path.c_str(), &isDirectory)) << expected.name;
        EXPECT_EQ(expected.isDirectory, isDirectory) << expected.name;
        EXPECT_EQ(expected.exists, PathFileExists(path.c_str())) << expected.name;
        EXPECT_EQ(expected.isDirectory, PathIsDirectory(path.c_str())) << expected.name;
        EXPECT_EQ(expected.size, GetFileSize(path.c_str())) << expected.name;
    }
    EXPECT_FALSE(IsFileExist(nullptr, nullptr));
    EXPECT_EQ(0, GetFileSize(nullptr));
}

TEST(UniqueFileNames, CountOnAndSkipWhatExists) {
    const TempFolder folder;
    const std::string base = folder.Path("a");
    const std::string pid =
        std::string("_").append(std::to_string(GetCurrentProcessId())).append("_");
    WriteFile(base + pid + "2", "");
    std::string name;
    MakeUniqueFileName(&name, base.c_str(), -1);
    EXPECT_EQ(base + pid + "1", name);
    MakeUniqueFileName(&name, base.c_str(), -1);
    EXPECT_EQ(base + pid + "3", name);
    MakeUniqueFileName(&name, base.c_str(), 0);
    EXPECT_EQ(base + pid + "0_4", name);
    MakeUniqueFileName(nullptr, base.c_str(), 0);
    MakeUniqueFileName(&name, nullptr, 17);
    EXPECT_EQ(pid + "17_5", name);
}

}  // namespace
