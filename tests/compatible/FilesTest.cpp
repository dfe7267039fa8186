#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>

#include "compatible/osFree.h"
#include "tests/support/TempFolder.h"

namespace {

namespace fs = std::filesystem;

class Files : public testing::Test {
protected:
    const TempFolder m_folder;
};

TEST_F(Files, OpenInTheModeUpToACommaWithoutBlanks) {
    const std::string path = m_folder.Path("file");
    struct {
        const char* mode;
        const char* after;  // the contents when "new" was written to a file that held "old"
    } const CASES[] = {{"w, ccs=UTF-8", "new"},
                       {" a ,x", "oldnew"},
                       {"r + b", "new"},
                       {"wbbbx", "new"}};  // uncut, x would refuse an existing file
    for (const auto& expected : CASES) {
        WriteFile(path, "old");
        FILE* file = nullptr;
        ASSERT_EQ(0, u_fopen(&file, path.c_str(), expected.mode)) << expected.mode;
        std::fputs("new", file);
        std::fclose(file);
        EXPECT_EQ(expected.after, ReadFile(path)) << expected.mode;
    }
    FILE* file = stdin;
    EXPECT_EQ(ENOENT, u_fopen(&file, m_folder.Path("none").c_str(), "r"));
    EXPECT_EQ(nullptr, file);
    EXPECT_EQ(EISDIR, u_fopen(&file, m_folder.Path().c_str(), "w"));
    EXPECT_EQ(EINVAL, u_fopen(&file, nullptr, "r"));
    EXPECT_EQ(EINVAL, u_fopen(&file, "x", nullptr));
    EXPECT_EQ(EINVAL, u_fopen(nullptr, "x", "r"));
}

TEST_F(Files, FoldersAreMadeWithEveryMissingLevel) {
    fs::create_directory(m_folder.Path("there"));
    fs::create_directory_symlink(m_folder.Path("there"), m_folder.Path("link"));
    const mode_t earlier = umask(027);
    for (const char* name : {"a/b/c", "a/b/c", "a//b/d/", "x\\y", "link/new"}) {
        EXPECT_TRUE(CreateFolder(m_folder.Path(name).c_str())) << name;
    }
    umask(earlier);
    for (const char* name : {"a", "a/b", "a/b/c", "a/b/d", "x/y", "there/new"}) {
        EXPECT_EQ(fs::perms(0750), fs::status(m_folder.Path(name)).permissions()) << name;
    }
    EXPECT_EQ(0, SHCreateDirectory(nullptr, "/"));

    WriteFile(m_folder.Path("file"), "");
    fs::create_symlink(m_folder.Path("none"), m_folder.Path("dangling"));
    for (const std::string& path :
         {m_folder.Path("file"), m_folder.Path("file/below"), m_folder.Path("dangling/below"),
          std::string("/proc/none/below"), std::string()}) {
        EXPECT_FALSE(CreateFolder(path.c_str())) << path;
        EXPECT_EQ(-1, SHCreateDirectory(nullptr, path.c_str())) << path;
    }
    EXPECT_FALSE(CreateFolder(nullptr));
}

TEST_F(Files, AreLookedAtThroughLinks) {
    WriteFile(m_folder.Path("file"), std::string(5000, 'x'));
    fs::create_directory(m_folder.Path("folder"));
    fs::create_symlink(m_folder.Path("file"), m_folder.Path("link"));
    fs::create_symlink(m_folder.Path("folder"), m_folder.Path("folderLink"));
    fs::create_symlink(m_folder.Path("none"), m_folder.Path("dangling"));
    struct {
        const char* name;
        bool exists;
        bool isDirectory;
        long long size;
    } const CASES[] = {{"file", true, false, 5000},
                       {"link", true, false, 5000},
                       {"folder", true, true, 0},
                       {"folderLink", true, true, 0},
                       {"dangling", false, false, 0}};
    for (const auto& expected : CASES) {
        const std::string path = m_folder.Path(expected.name);
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

TEST_F(Files, UniqueNamesCountOnAndSkipWhatExists) {
    const std::string base = m_folder.Path("a");
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
