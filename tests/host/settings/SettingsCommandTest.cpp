#include <algorithm>
#include <filesystem>
#include <map>

#include "tests/host/settings/ProgramFixture.h"

namespace {

namespace fs = std::filesystem;
using nlohmann::json;

class SettingsCommand : public ProgramFixture {
protected:
    void SetUp() override { fs::create_directories(m_dataFolder); }

    static json Setting(const std::string& name) {
        return Json("settings " + name)["settings"].at(0);
    }
    static void Set(const std::string& arguments) {
        const ProgramRun run = RunTallyquist("settings set " + arguments, "/");
        EXPECT_EQ(0, run.exitCode) << run.err;
        EXPECT_EQ("", run.err);
    }

    const std::string m_installed = BUILT_CONTENTS "/Resources/CMSystemSetting.cfg";
};

TEST_F(SettingsCommand, TellsWhereEachValueComesFrom) {
    const json before = Json("settings");
    EXPECT_EQ(30U, before["settings"].size());
    EXPECT_EQ(json({{"path", m_settings}, {"exists", false}}), before["user"]);
    EXPECT_EQ(json({{"path", m_installed}, {"exists", true}}), before["installed"]);

    WriteFile(m_settings, "<cmsystem><MaxDetch>9</MaxDetch></cmsystem>");
    EXPECT_EQ(json({{"name", "MaxDetch"}, {"value", "9"}, {"from", "user"}}), Setting("MaxDetch"));
    EXPECT_EQ(json({{"name", "SearchTTL"}, {"value", "1"}, {"from", "installed"}}),
              Setting("SearchTTL"));
    EXPECT_EQ(
        "name       value  from\n"
        "SearchTTL  1      installed\n"
        "\n"
        "file       exists  path\n"
        "user       yes     " +
            m_settings + "\ninstalled  yes     " + m_installed + "\n",
        RunTallyquist("settings SearchTTL", "/").out);
}

TEST_F(SettingsCommand, SetKeepsWhatPeopleWrote) {
    WriteFile(m_settings, R"(<?xml version="1.0" encoding="UTF-8"?>
<!-- mine -->
<cmsystem version="1.0">
    <!-- few -->
    <MaxDetch>2</MaxDetch>
    <MyOwn colour="blue">
        <deep/>
    </MyOwn>
    <!-- last -->
    <SearchTTL>4</SearchTTL>
</cmsystem>
)");
    const ProgramRun hidden = RunTallyquist("settings SearchTTL", "/");
    EXPECT_NE(std::string::npos, hidden.out.find("SearchTTL  1      installed\n"));
    EXPECT_EQ("tallyquist: " + m_settings +
                  ": SearchTTL comes after an element that programs do not know, which ends their "
                  "search\n",
              hidden.err);

    Set("MaxDetch 3");
    Set("CMServiceName 'A & <B> é'");  // added
    Set("SearchTTL 5");                // moved to where programs find it
    EXPECT_EQ(R"(<?xml version="1.0" encoding="UTF-8"?>
<!-- mine -->
<cmsystem version="1.0">
    <!-- few -->
    <MaxDetch>3</MaxDetch>
    <CMServiceName>A &amp; &lt;B&gt; é</CMServiceName>
    <SearchTTL>5</SearchTTL>
    <MyOwn colour="blue">
        <deep/>
    </MyOwn>
    <!-- last -->
</cmsystem>
)",
              ReadFile(m_settings));
    EXPECT_EQ("A & <B> é", Setting("CMServiceName")["value"]);
    EXPECT_EQ("user", Setting("SearchTTL")["from"]);
}

TEST_F(SettingsCommand, FirstSetCopiesTheInstalledFile) {
    fs::remove_all(m_folder.Path("data"));
    Set("UsbRetryCount 8");
    EXPECT_EQ("8", Setting("UsbRetryCount")["value"]);
    const std::string copy = ReadFile(m_settings);
    EXPECT_NE(std::string::npos, copy.find("<!-- Base names of the pipes "));
    EXPECT_EQ("user", Setting("SearchTTL")["from"]);
    EXPECT_EQ(std::vector<std::string>{"CMSystemSetting.cfg"}, NamesIn(m_dataFolder));
    EXPECT_EQ(std::string::npos, ReadFile(m_installed).find("<UsbRetryCount>8"));
}

TEST_F(SettingsCommand, BrokenFileIsReportedWithItsPlaceAndLeftAlone) {
    const std::string head = "<cmsystem>\n<!-- x -->\n";
    const std::map<std::string, std::string> faults{
        {head + "<MaxDetch>1</MaxDtch>\n</cmsystem>",
         ":3: not well-formed XML: Start-end tags mismatch"},
        {head + "<MaxDetch>1\n& 2</MaxDetch></cmsystem>", ":4: not well-formed XML"},
        {head + "<MaxDetch a='1' a='1'/>\n</cmsystem>", ":3: not well-formed XML"},
        {head + "</cmsystem>\n\nx", ":5: not well-formed XML"},
        {head + "<MaxDetch>\xE9</MaxDetch>\n</cmsystem>", ":3: not UTF-8"},
        {head + "\n\x01</cmsystem>", ":4: a character that XML cannot hold"},
        {"\xFF\xFE<", ": not well-formed XML"},
        {"", ":1: not well-formed XML: No document element found"},
        {"<other/>", ": the root element is 'other', not 'cmsystem'"}};
    for (const auto& [text, fault] : faults) {
        WriteFile(m_settings, text);
        ExpectFailure(1, "settings set MaxDetch 2", m_settings + fault);
        EXPECT_EQ(text, ReadFile(m_settings));
    }
    // Programs go on with the installed copy then, so that is shown.
    WriteFile(m_settings, "<other/>");
    const ProgramRun shown = RunTallyquist("settings MaxDetch", "/");
    EXPECT_EQ(1, shown.exitCode);
    EXPECT_NE(std::string::npos, shown.out.find("MaxDetch  5      installed\n"));
    EXPECT_EQ("tallyquist: " + m_settings + faults.at("<other/>") + "\n", shown.err);
    EXPECT_EQ(std::vector<std::string>{"CMSystemSetting.cfg"}, NamesIn(m_dataFolder));

    fs::remove(m_settings);
    fs::create_directory(m_settings);
    ExpectFailure(1, "settings set MaxDetch 2",
                  "cannot read " + m_settings + ": it is not a regular file");
}

TEST_F(SettingsCommand, RefusesWhatMakesNoSense) {
    const std::map<std::string, std::string> refused{
        {"settings maxdetsch", "'maxdetsch' is not a setting; did you mean MaxDetch?"},
        {"settings set searchttl 1", "'searchttl' is not a setting; did you mean SearchTTL?"},
        {"settings cmsystem", "'cmsystem' is not a setting; 'tallyquist settings' lists them"},
        {"settings set SearchTTL 3x", "SearchTTL is a number from 0 to 2147483647, not '3x'"},
        {"settings set SearchTTL -- -1", "SearchTTL is a number from 0 to 2147483647, not '-1'"},
        {"settings set SearchTTL 2147483648",
         "SearchTTL is a number from 0 to 2147483647, not '2147483648'"},
        {"settings set CostSettingPath Cost",
         "CostSettingPath is appended to the path of a folder: it begins with a slash and does not "
         "lead out again, unlike 'Cost'"},
        {"settings set CMServiceName \"$(printf 'a\\001')\"",
         "the value holds a character that an XML file cannot hold"},
        {"settings set CMServiceName \"$(printf '\\351')\"",
         "the value holds a character that an XML file cannot hold"}};
    for (const auto& [arguments, message] : refused) {
        ExpectFailure(2, arguments, message);
    }
    EXPECT_FALSE(fs::exists(m_settings));
    const ProgramRun incomplete = RunTallyquist("settings set SearchTTL", "/");
    EXPECT_EQ(2, incomplete.exitCode);
    EXPECT_TRUE(
        incomplete.err.ends_with("Run 'tallyquist settings set --help' for more information.\n"));
}

TEST_F(SettingsCommand, IncompleteInstallation) {
    const std::string contents = m_folder.Path("App.app/Contents");
    fs::create_directories(contents + "/PlugIns");
    const ScopedVariable elsewhere("TALLYQUIST_CONTENTS", contents.c_str());
    const std::string parser = contents + "/PlugIns/zopmekxmlpxd.plugin";
    ExpectFailure(1, "settings", "cannot load the XML parser plug-in " + parser);
    ExpectFailure(2, "settings set MaxDetsch 1",
                  "'MaxDetsch' is not a setting; did you mean MaxDetch?");

    fs::create_symlink(BUILT_CONTENTS "/PlugIns/zopmekxmlpxd.plugin", parser);
    const std::string missing = contents + "/Resources/CMSystemSetting.cfg is missing";
    ExpectFailure(1, "settings set MaxDetch 1", missing);
    const ProgramRun shown = RunTallyquist("settings MaxDetch --json", "/");
    EXPECT_EQ(1, shown.exitCode);
    EXPECT_EQ("tallyquist: " + missing + "\n", shown.err);
    EXPECT_EQ(json({{"name", "MaxDetch"}, {"value", nullptr}, {"from", nullptr}}),
              json::parse(shown.out)["settings"].at(0));
}

}  // namespace
