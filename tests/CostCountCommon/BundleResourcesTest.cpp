#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "CostCountCommon/include/MacUtility.h"
#include "tests/CostCountCommon/LayoutFixture.h"

namespace {

class BundleResources : public LayoutFixture {};

// The texts are the same in both languages, since either may be the user's.
TEST_F(BundleResources, TextsAreThoseOfTheStringTable) {
    CreateBundle("R/T.app");
    for (const char* language : {"de", "en"}) {
        const std::string folder =
            m_root.Path("R/T.app/Contents/Resources/").append(language).append(".lproj");
        std::filesystem::create_directory(folder);
        WriteFile(folder + "/Localizable.strings", "\"k\" = \"v w\";\n");
    }
    std::filesystem::create_directory(m_root.Path("R/T.app/Contents/Resources/xmls"));
    EXPECT_EQ("1 v w\n0 \n1 2\n",
              Probe("R/T.app/Contents/" CODE_FOLDER, 2, "text:k text:v localizationsCount"));
    EXPECT_EQ("0 \n", Probe("R/tools", 2, "text:k"));
    EXPECT_EQ(0, LoadResourceString("k", nullptr));
    std::string text = "earlier";
    EXPECT_EQ(0, LoadResourceString(nullptr, &text));
    EXPECT_EQ("", text);
}

TEST_F(BundleResources, ThatCannotBeNamed) {
    EXPECT_FALSE(GetResourcesPath(nullptr));
    for (const char* name : {static_cast<const char*>(nullptr), "", "\xFF"}) {
        EXPECT_EQ(nullptr, CreatePluginURLRef(name));
    }
}

}  // namespace
