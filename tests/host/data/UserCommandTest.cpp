#include <filesystem>

#include "tests/host/settings/ProgramFixture.h"

namespace {

namespace fs = std::filesystem;
using nlohmann::json;

TEST_F(ProgramFixture, UserShowTellsWhatItCouldNotRead) {
    const std::string contents = m_folder.Path("Contents");
    const std::string parser = "/PlugIns/zopmekxmlpxd.plugin";
    const std::string core = "/PlugIns/qvtrelCore.plugin/Contents/Resources";
    fs::create_directories(contents + core);
    fs::create_symlink(BUILT_CONTENTS + parser, contents + parser);
    const ScopedVariable application("TALLYQUIST_CONTENTS", contents.c_str());
    const std::string file = contents + core + "/CMUserSetting.cfg";
    std::string text = ReadFile(BUILT_CONTENTS + core + "/CMUserSetting.cfg");
    const auto replace = [&](const std::string& taken, const std::string& put) {
        text.replace(text.find(taken), taken.size(), put);
        WriteFile(file, text);
    };
    replace("<printerList/>", "<printerList><printer key='p'/></printerList>");
    replace("<spanList/>", "<spanList><span to='t' from='f'/></spanList>");
    json shown = Json("user show");
    EXPECT_EQ(json({{"id", "date"}, {"name", "Date"}, {"value", "1"}}),
              shown["jobCostListSetting"][0]);
    EXPECT_EQ("p", shown["FilterCondition"]["printerList"][0]);
    EXPECT_EQ("f", shown["FilterCondition"]["spanList"][0]["from"]);
    replace("<startDate></startDate>", "");
    replace("id=\"date\"", "");
    replace("<spanList><span to='t' from='f'/></spanList>", "");
    shown["startDate"] = shown["language"] = nullptr;
    shown["jobCostListSetting"] = shown["FilterCondition"]["spanList"] = json::array();
    EXPECT_EQ(shown, Json("user show", 1));
    const std::string told = RunTallyquist("user show", "/").err;
    EXPECT_NE(std::string::npos, told.find(": startDate is missing")) << told;
    EXPECT_NE(std::string::npos, told.find(": jobCostListSetting holds something ")) << told;
    EXPECT_TRUE(told.ends_with(file + ": spanList is missing\n")) << told;
}

}  // namespace
