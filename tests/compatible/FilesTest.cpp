#include <gtest/gtest.h>

#include <cerrno>

#include "compatible/osFree.h"
#include "tests/support/TempFolder.h"

namespace {

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
                       {"abcdefghij", "oldnew"}};
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

}  // namespace
