#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "CostCountCommon/include/MacUtility.h"
#include "tests/support/TempFolder.h"

namespace {

TEST(FileList, HoldsWhatThePatternIsFoundIn) {
    const TempFolder folder;
    for (const char* name : {"xcfg", "a.cfg", "a.cfg.bak", "b.txt", ".hidden.cfg", "\u00DF"}) {
        WriteFile(folder.Path(name), "");
    }
    std::filesystem::create_directory(folder.Path("empty"));
    using Names = std::vector<std::string>;
    const struct {
        std::string pattern;  // after the folder
        Names expected;
    } rows[] = {
        {"/*.cfg", {".hidden.cfg", "a.cfg", "a.cfg.bak", "xcfg"}},
        {"//a*g//", {"a.cfg", "a.cfg.bak"}},
        {"/txt", {"b.txt"}},
        {"/^.$", {"\u00DF"}},  // one character, two bytes
        {"/(b|x)[.c]", {"b.txt", "xcfg"}},
        {"/A.CFG", {}},
        {"/[", {}},
        {"/(", {}},
        // What could take hours or gigabytes is not tried.
        {"/(*)(*)\\2\\1g", {}},
        {"/(a{1,255}){1,255}", {}},
        {"/((((x{0,9}){0,9}){0,9}){0,9})", {}},
        {std::string("/").append(1000, '(').append("a").append(1000, ')'), {}},
        {"/\xFF", {}},
        {"/empty/*", {}},
        {"/missing/*", {}},
        {"/a.cfg/*", {}},
    };
    for (const auto& row : rows) {
        Names names{"earlier"};
        MacGetFileList(folder.Path().append(row.pattern), names);
        ASSERT_EQ("earlier", names.at(0));
        names.erase(names.begin());
        EXPECT_EQ(row.expected, names) << row.pattern;
    }
}

TEST(FileList, IsEmptyWithoutAFolderOrAName) {
    std::vector<std::string> names;
    for (const std::string& pattern : {std::string(), std::string("*"), std::string("/"),
                                       std::string("//"), std::string("/*\0", 3)}) {
        MacGetFileList(pattern, names);
        EXPECT_EQ(0U, names.size()) << pattern;
    }
    MacGetFileList("/^dev$", names);
    EXPECT_EQ(std::vector<std::string>{"dev"}, names);
}

}  // namespace
