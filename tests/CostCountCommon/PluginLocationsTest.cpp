#include "CostCountCommon/include/PluginLocations.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>

#include "tests/support/Environment.h"
#include "tests/support/TempFolder.h"

namespace {

namespace fs = std::filesystem;

class PluginLocations : public testing::Test {
protected:
    // What a process whose executable lies in `folder` of the layout finds; "ROOT" stands for the
    // layout.
    std::string Probe(const std::string& folder, int type, const std::string& keys) {
        fs::create_directories(m_root.Path(folder));
        fs::copy_file(LOCATION_PROBE, m_root.Path(folder + "/probe"),
                      fs::copy_options::overwrite_existing);
        return Run(folder + "/probe " + std::to_string(type) + " " + keys);
    }

    void CreateCorePlugin(const std::string& contents) {
        fs::create_directories(m_root.Path(contents + "/PlugIns/qvtrelCore.plugin"));
    }

    std::string Run(const std::string& command) {
        const std::unique_ptr<FILE, int (*)(FILE*)> output(popen(m_root.Path(command).c_str(), "r"),
                                                           pclose);
        std::string text;
        for (int c = 0; (c = std::fgetc(output.get())) != EOF;) {
            text += static_cast<char>(c);
        }
        const std::string root = m_root.Path("R");
        for (size_t at = 0; (at = text.find(root, at)) != std::string::npos;) {
            text.replace(at, root.size(), "ROOT");
        }
        return text;
    }

    TempFolder m_root;
    ScopedVariable m_contents{"TALLYQUIST_CONTENTS", nullptr};
};

constexpr const char* KEYS =
    "applogger_path bnt_path install_path sconp_path GetResourcesPath GetPluginResourcesPath "
    "CreatePluginFolderURLRef CreatePluginURLRef";

TEST_F(PluginLocations, OfTheApplication) {
    CreateCorePlugin("R/T.app/Contents");
    const std::string expected =
        "1 ROOT/T.app/Contents/PlugIns/zopmekLogger.plugin\n"
        "1 ROOT/T.app/Contents/Helpers/qvtrelBnt\n"
        "1 ROOT\n"
        "1 ROOT/T.app/Contents/PlugIns/sconp_path\n"
        "1 ROOT/T.app/Contents/Resources\n"
        "1 ROOT/T.app/Contents/PlugIns/qvtrelCore.plugin/Contents/Resources\n"
        "1 ROOT/T.app/Contents/PlugIns\n"
        "1 ROOT/T.app/Contents/PlugIns/name\n";
    EXPECT_EQ(expected, Probe("R/T.app/Contents/Linux", 2, KEYS));
    {
        const ScopedVariable contents("TALLYQUIST_CONTENTS",
                                      m_root.Path("R/T.app/Contents/").c_str());
        EXPECT_EQ(expected, Probe("elsewhere", 0, KEYS));
    }
}

TEST_F(PluginLocations, OfAnApplicationStartedThroughALink) {
    Probe("R/T.app/Contents/Linux", 2, KEYS);
    fs::create_directories(m_root.Path("bin"));
    fs::create_symlink(m_root.Path("R/T.app/Contents/Linux/probe"), m_root.Path("bin/link"));
    EXPECT_EQ("1 ROOT/T.app/Contents/PlugIns/sconp_path\n", Run("bin/link 2 sconp_path"));
}

TEST_F(PluginLocations, OfAToolInHelpers) {
    CreateCorePlugin("R/T.app/Contents");
    EXPECT_EQ(
        "1 ROOT/T.app/Contents/PlugIns/zopmekLogger.plugin\n"
        "1 ROOT/T.app/Contents/Helpers/Helpers/qvtrelBnt\n"
        "1 ROOT\n"
        "1 ROOT/T.app/Contents/PlugIns/sconp_path\n"
        "1 ROOT/T.app/Contents/Helpers/Resources\n"
        "1 ROOT/T.app/Contents/PlugIns/qvtrelCore.plugin/Contents/Resources\n"
        "1 ROOT/T.app/Contents/PlugIns\n"
        "1 ROOT/T.app/Contents/PlugIns/name\n",
        Probe("R/T.app/Contents/Helpers", 2, KEYS));
}

TEST_F(PluginLocations, OfALoginItem) {
    CreateCorePlugin("R/T.app/Contents");
    EXPECT_EQ(
        "1 ROOT/T.app/Contents/PlugIns/zopmekLogger.plugin\n"
        "1 ROOT/T.app/Contents/Helpers/qvtrelBnt\n"
        "1 ROOT\n"
        "1 ROOT/T.app/Contents/PlugIns/sconp_path\n"
        "1 ROOT/T.app/Contents/Resources\n"
        "1 ROOT/T.app/Contents/PlugIns/qvtrelCore.plugin/Contents/Resources\n"
        "1 ROOT/T.app/Contents/PlugIns\n"
        "1 ROOT/T.app/Contents/PlugIns/name\n",
        Probe("R/T.app/Contents/Library/loginITEMS/Item.app/Contents/Linux", 3, KEYS));
}

TEST_F(PluginLocations, OfALoginItemThatLiesElsewhere) {
    EXPECT_EQ("0 \n1 unchanged\n0 \n0 \n1 unchanged\n0 \n0 unchanged\n0 unchanged\n",
              Probe("R/Item.app/Contents/Linux", 3, KEYS));
}

TEST_F(PluginLocations, OfAPlainFolder) {
    EXPECT_EQ(
        "1 ROOT/tools/PlugIns/zopmekLogger.plugin\n"
        "1 ROOT/tools/Helpers/qvtrelBnt\n"
        "1 ROOT\n"
        "1 ROOT/tools/PlugIns/sconp_path\n"
        "1 ROOT/tools/Resources\n"
        "0 \n"
        "1 ROOT/tools/PlugIns\n"
        "1 ROOT/tools/PlugIns/name\n",
        Probe("R/tools", 2, KEYS));
}

TEST_F(PluginLocations, OfEveryKey) {
    EXPECT_EQ(
        "1 CMSystemSetting.cfg\n"
        "1 ROOT/Helpers/qvtrelDetch\n"
        "1 ROOT/PlugIns/zopmekJoblog.plugin\n"
        "1 ROOT/PlugIns/zopmekMedia.plugin\n"
        "1 ROOT/PlugIns/zopmekxmlpxd.plugin\n"
        "1 ROOT/PlugIns/zopmekadmutil.plugin\n"
        "1 ROOT/PlugIns/zopmekDevice.plugin\n"
        "1 ROOT/PlugIns/qvtrelDbdrv.plugin\n"
        "1 ROOT/PlugIns/zopmekPDiscovery.plugin\n"
        "1 ROOT/PlugIns/qvtrelExporter.plugin\n"
        "1 ROOT/PlugIns/zopmekPrint.plugin\n"
        "1 ROOT/PlugIns/zopmekCounter.plugin\n"
        "1 ROOT/PlugIns/Language\n"
        "1 ROOT/PlugIns/zopmekipt.plugin\n"
        "0 unchanged\n"
        "0 unchanged\n",
        Probe(
            "R", 2,
            "systemsetting_path detch_path velsJoblog_path velsMedia_path xmlParser_path "
            "admutil_path "
            "velsdevice_path joblogdriver_path PDiscovery_path JobCostExporter_path velsPrint_path "
            "velsCounter_path Language ipTracker_path Applogger_path ''"));
}

TEST_F(PluginLocations, VersionIsThatOfTheInfoPlist) {
    std::string version;
    const auto ask = [&](const std::string& plist) {
        WriteFile(m_root.Path("Info.plist"), plist);
        version = "earlier";
        return GetPluginFilePath("Appver", &version);
    };
    const ScopedVariable contents("TALLYQUIST_CONTENTS", m_root.Path().c_str());
    EXPECT_TRUE(
        ask("<dict><key>CFBundleVersion</key>\n  <string>1.2 &lt;&amp;amp;&gt;</string></dict>"));
    EXPECT_EQ("1.2 <&amp;>", version);
    EXPECT_TRUE(
        ask("<!-- <key>CFBundleVersion</key><string>0</string> -->"
            "<key>CFBundleVersion</key><string>7</string>"));
    EXPECT_EQ("7", version);
    for (const char* broken :
         {"", "<key>CFBundleVersion</key>", "<key>CFBundleVersion</key><integer>1</integer>",
          "<key>CFBundleVersion</key><string>1", "<key>Other</key><string>1</string>"}) {
        EXPECT_FALSE(ask(broken)) << broken;
    }
    const ScopedVariable built("TALLYQUIST_CONTENTS", BUILT_CONTENTS);
    EXPECT_TRUE(GetPluginFilePath("Appver", &version));
    EXPECT_EQ(PRODUCT_VERSION, version);
}

TEST_F(PluginLocations, NullArgumentsGiveFalse) {
    std::string path = "unchanged";
    EXPECT_FALSE(GetPluginFilePath(nullptr, &path));
    EXPECT_FALSE(GetPluginFilePath("applogger_path", nullptr));
    EXPECT_EQ("unchanged", path);
}

}  // namespace
