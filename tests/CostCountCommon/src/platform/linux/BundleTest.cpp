#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "CostCountCommon/include/MacUtility.h"
#include "tests/CostCountCommon/LayoutFixture.h"

namespace {

namespace fs = std::filesystem;

class Bundle : public LayoutFixture {};

TEST_F(Bundle, MayBeNamedByAVariable) {
    CreateBundle("R/T.app/Contents/PlugIns/qvtrelCore.plugin");
    const std::string keys = std::string(KEYS).append(" GetResourcesPath");
    const std::string inside = Probe("R/T.app/Contents/Linux", 2, keys);
    EXPECT_TRUE(inside.ends_with("\n1 ROOT/T.app/Contents/Resources\n")) << inside;
    const ScopedVariable contents("TALLYQUIST_CONTENTS", m_root.Path("R/T.app/Contents/").c_str());
    EXPECT_EQ(inside, Probe("elsewhere", 0, keys));
}

TEST_F(Bundle, OfAProgramOrTool) {
    EXPECT_EQ("1 ROOT/T.app/Contents/Helpers/Resources\n",
              Probe("R/T.app/Contents/Helpers", 2, "GetResourcesPath"));
    EXPECT_EQ("1 ROOT/tools/Resources\n", Probe("R/tools", 2, "GetResourcesPath"));
    Probe("R/T.app/Contents/Linux", 2, "sconp_path");
    fs::create_symlink(m_root.Path("R/T.app/Contents/Linux/probe"), m_root.Path("link"));
    EXPECT_EQ("1 ROOT/T.app/Contents/PlugIns/sconp_path\n", Run("link 2 sconp_path"));
}

TEST_F(Bundle, VersionIsFoundInAnyText) {
    const ScopedVariable contents("TALLYQUIST_CONTENTS", m_root.Path().c_str());
    const struct {
        const char* plist;
        std::string version;
    } rows[] = {{"<!-- <key>CFBundleVersion</key><string>0</string> -->"
                 "<key>CFBundleVersion</key><string>7</string>",
                 "7"},
                {"<key>CFBundleVersion</key>", ""},
                {"<key>CFBundleVersion</key><integer>1</integer>", ""},
                {"<key>CFBundleVersion</key><string>1", ""},
                {"<key>Other</key><string>1</string>", ""}};
    for (const auto& row : rows) {
        WriteFile(m_root.Path("Info.plist"), row.plist);
        std::string version;
        EXPECT_EQ(!row.version.empty(), GetPluginFilePath("Appver", &version)) << row.plist;
        EXPECT_EQ(row.version, version);
    }
    const ScopedVariable built("TALLYQUIST_CONTENTS", BUILT_CONTENTS);
    std::string version;
    EXPECT_TRUE(GetPluginFilePath("Appver", &version));
    EXPECT_EQ(PRODUCT_VERSION, version);
}

TEST_F(Bundle, IsAnyFolderWhosePathIsUtf8) {
    const ScopedVariable contents("TALLYQUIST_CONTENTS", m_root.Path().c_str());
    EXPECT_EQ("", GetPluginResourcesPath());
    const std::string plugin = m_root.Path("PlugIns/qvtrelCore.plugin");
    fs::create_directories(plugin);
    EXPECT_EQ(plugin + "/Contents/Resources", GetPluginResourcesPath());

    const ScopedVariable notText("TALLYQUIST_CONTENTS", m_root.Path("\xFF").c_str());
    fs::create_directories(m_root.Path("\xFF/PlugIns/qvtrelCore.plugin"));
    std::string path = "unchanged";
    EXPECT_FALSE(GetResourcesPath(&path));
    EXPECT_FALSE(GetPluginFilePath("bnt_path", &path));
    EXPECT_EQ("", GetPluginResourcesPath());
    EXPECT_EQ(nullptr, CreatePluginURLRef("name"));
    EXPECT_EQ(nullptr, CreatePluginFolderURLRef());
}

}  // namespace
