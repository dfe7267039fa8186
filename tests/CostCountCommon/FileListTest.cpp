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
    using Names = std::vector<std::string>;
    const struct {
        std::string pattern;
        Names expected;
    } rows[] = {
        {folder.Path("*.cfg"), {".hidden.cfg", "a.cfg", "a.cfg.bak", "xcfg"}},
        {folder.Path().append("//a*g//"), {"a.cfg", "a.cfg.bak"}},
        {folder.Path("^.$"), {"\u00DF"}},  // one character, two bytes
        {folder.Path("(b|x)[.c]"), {"b.txt", "xcfg"}},
        {folder.Path("A.CFG"), {}},
        {folder.Path("["), {}},
        // What could take hours or gigabytes is not tried.
        {folder.Path("(*)(*)\\2\\1g"), {}},
        {folder.Path("(a{1,255}){1,255}"), {}},
        {folder.Path(std::string(1000, '(').append("a").append(1000, ')')), {}},
        {folder.Path("\xFF"), {}},
        {folder.Path("missing/*"), {}},
        {"/^dev$", {"dev"}},
        // Neither a folder nor a name.
        {"", {}},
        {"*", {}},
        {"//", {}},
        {std::string("/*\0", 3), {}},
    };
    for (const auto& row : rows) {
        Names names{"earlier"};
        MacGetFileList(row.pattern, names);
        ASSERT_EQ("earlier", names.at(0));
        names.erase(names.begin());
        EXPECT_EQ(row.expected, names) << row.pattern;
    }
}

}  // namespace
