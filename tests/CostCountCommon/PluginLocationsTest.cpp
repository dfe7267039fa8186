#include "CostCountCommon/include/PluginLocations.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/CostCountCommon/LayoutFixture.h"

namespace {

class PluginLocations : public LayoutFixture {};

TEST_F(PluginLocations, OfAnApplicationAndWhatLiesInIt) {
    const std::string item = "R/T.app/Contents/Library/loginITEMS/Item.app";
    for (const auto& bundle : {std::string("R/T.app"), item,
                               std::string("R/T.app/Contents/PlugIns/qvtrelCore.plugin")}) {
        CreateBundle(bundle);
    }
    const std::string ofAll =
        "1 ROOT/T.app/Contents/PlugIns/zopmekLogger.plugin\n"
        "1 ROOT\n"
        "1 ROOT/T.app/Contents/PlugIns/sconp_path\n"
        "1 ROOT/T.app/Contents/PlugIns/qvtrelCore.plugin/Contents/Resources\n"
        "1 ROOT/T.app/Contents/PlugIns\n"
        "1 ROOT/T.app/Contents/PlugIns/name\n";
    const std::string ofMain = std::string("1 ROOT/T.app/Contents/Resources\n")
                                   .append("1 ROOT/T.app/Contents/Helpers/qvtrelBnt\n")
                                   .append(ofAll);
    const std::string keys = std::string("GetResourcesPath").append(KEYS);
    EXPECT_EQ(ofMain, Probe("R/T.app/Contents/" CODE_FOLDER, 2, keys));
    EXPECT_EQ(ofMain, Probe(item + "/Contents/" CODE_FOLDER, 3, keys));
    EXPECT_EQ(std::string("1 ROOT/T.app/Contents/Helpers/Helpers/qvtrelBnt\n").append(ofAll),
              Probe("R/T.app/Contents/Helpers", 2, KEYS));
}

TEST_F(PluginLocations, OfWhatLiesElsewhere) {
    CreateBundle("R/Item.app");
    EXPECT_EQ(
        "1 unchanged\n1 unchanged\n0 \n0 \n0 \n0 \n0 unchanged\n0 unchanged\n",
        Probe("R/Item.app/Contents/" CODE_FOLDER, 3, std::string("GetResourcesPath").append(KEYS)));
    EXPECT_EQ(
        "1 ROOT/tools/Helpers/qvtrelBnt\n"
        "1 ROOT/tools/PlugIns/zopmekLogger.plugin\n"
        "1 ROOT\n"
        "1 ROOT/tools/PlugIns/sconp_path\n"
        "0 \n"
        "1 ROOT/tools/PlugIns\n"
        "1 ROOT/tools/PlugIns/name\n",
        Probe("R/tools", 2, KEYS));
}

TEST_F(PluginLocations, OfKeysThatAreNoFilesInThePlugInFolder) {
    CreateBundle("R/T.app");
    EXPECT_EQ("1 CMSystemSetting.cfg\n1 1.2 <&amp;>\n",
              Probe("R/T.app/Contents/" CODE_FOLDER, 2, "systemsetting_path Appver"));
    EXPECT_EQ("0 \n0 unchanged\n0 unchanged\n", Probe("R/tools", 2, "Appver Applogger_path ''"));
    std::string path = "unchanged";
    EXPECT_FALSE(GetPluginFilePath(nullptr, &path));
    EXPECT_FALSE(GetPluginFilePath("applogger_path", nullptr));
}

}  // namespace
