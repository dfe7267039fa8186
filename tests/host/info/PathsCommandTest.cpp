#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <nlohmann/json.hpp>

#include "tests/host/common/ProgramRun.h"
#include "tests/support/Environment.h"
#include "tests/support/TempFolder.h"

namespace {

namespace fs = std::filesystem;
using nlohmann::json;

class PathsCommand : public testing::Test {
protected:
    void SetUp() override { fs::create_directories(m_folder.Path("tmp")); }

    json Paths() const {
        const ProgramRun run = RunTallyquist("paths --json", "/");
        EXPECT_EQ(0, run.exitCode) << run.err;
        return json::parse(run.out);
    }

    TempFolder m_folder;
    const std::string m_contents = m_folder.Path("App.app/Contents");
    const std::string m_data = m_folder.Path("data");
    const ScopedVariable m_contentsVariable{"TALLYQUIST_CONTENTS", m_contents.c_str()};
    const ScopedVariable m_dataVariable{"XDG_DATA_HOME", m_data.c_str()};
    const ScopedVariable m_temporaryVariable{"TMPDIR", m_folder.Path("tmp").c_str()};
};

TEST_F(PathsCommand, NamesEveryLocationAndWhetherItExists) {
    const std::string plugIns = m_contents + "/PlugIns";
    const std::string group = m_data + "/K7Q3MZP2WD.RX.qvtrel";
    const std::map<std::string, std::string> expected{
        {"application_data", "/Library/Application Support"},
        {"application_data_local", m_data},
        {"group_container", group},
        {"group_container_app_support", group + "/Library/Application Support"},
        {"temporary_folder", m_folder.Path("tmp")},
        {"resources", m_contents + "/Resources"},
        {"core_plugin_resources", plugIns + "/qvtrelCore.plugin/Contents/Resources"},
        {"plugin_folder", plugIns},
        {"pipe_folder", group + "/pipe"},
        {"install_path", fs::path(m_contents).parent_path().parent_path()},
        {"bnt_path", m_contents + "/Helpers/qvtrelBnt"},
        {"detch_path", m_contents + "/Helpers/qvtrelDetch"},
        {"sconp_path", plugIns + "/sconp_path"},
        {"velsJoblog_path", plugIns + "/zopmekJoblog.plugin"},
        {"velsMedia_path", plugIns + "/zopmekMedia.plugin"},
        {"xmlParser_path", plugIns + "/zopmekxmlpxd.plugin"},
        {"admutil_path", plugIns + "/zopmekadmutil.plugin"},
        {"applogger_path", plugIns + "/zopmekLogger.plugin"},
        {"velsdevice_path", plugIns + "/zopmekDevice.plugin"},
        {"joblogdriver_path", plugIns + "/qvtrelDbdrv.plugin"},
        {"PDiscovery_path", plugIns + "/zopmekPDiscovery.plugin"},
        {"JobCostExporter_path", plugIns + "/qvtrelExporter.plugin"},
        {"velsPrint_path", plugIns + "/zopmekPrint.plugin"},
        {"velsCounter_path", plugIns + "/zopmekCounter.plugin"},
        {"Language", plugIns + "/Language"},
        {"ipTracker_path", plugIns + "/zopmekipt.plugin"},
    };
    fs::create_directories(plugIns + "/qvtrelCore.plugin/Contents/Resources");
    fs::create_directories(m_contents + "/Helpers");
    WriteFile(m_contents + "/Helpers/qvtrelBnt", "");

    std::map<std::string, std::string> found;
    for (const json& location : Paths()) {
        if (location.contains("path")) {
            found[location["key"]] = location["path"];
            EXPECT_EQ(fs::exists(std::string(location["path"])), bool(location["exists"]));
        }
    }
    EXPECT_EQ(expected, found);

    const std::string table = RunTallyquist("paths", "/").out;
    for (const std::string& line :
         {"bnt_path                     yes     " + m_contents + "/Helpers/qvtrelBnt\n",
          "detch_path                   no      " + m_contents + "/Helpers/qvtrelDetch\n",
          std::string("systemsetting_path           -       CMSystemSetting.cfg\n")}) {
        EXPECT_NE(std::string::npos, table.find(line)) << line << table;
    }
}

TEST_F(PathsCommand, WhatCannotBeToldIsNullAndTextsAreNoPaths) {
    json texts;
    json missing;
    for (const json& location : Paths()) {
        if (!location.contains("path")) {
            texts.push_back(location);
        } else if (location["path"].is_null()) {
            missing.push_back(location);
        }
    }
    EXPECT_EQ(json::parse(R"([{"key": "Appver", "text": null},
                              {"key": "systemsetting_path", "text": "CMSystemSetting.cfg"}])"),
              texts);
    EXPECT_EQ(json::parse(R"([{"key": "core_plugin_resources", "path": null, "exists": false}])"),
              missing);
    EXPECT_NE(std::string::npos, RunTallyquist("paths", "/").out.find("(not found)\n"));
    const ProgramRun full = RunTallyquist("paths >/dev/full", "/");
    EXPECT_EQ(1, full.exitCode);
    EXPECT_EQ("tallyquist: cannot write standard output: No space left on device\n", full.err);
}

}  // namespace
