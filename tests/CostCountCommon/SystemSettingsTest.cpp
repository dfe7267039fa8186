#include <gtest/gtest.h>

#include <numeric>

#include "tests/CostCountCommon/SettingsFixture.h"

namespace {

constexpr unsigned int FIRST_SETTING = 2;
constexpr unsigned int LAST_SETTING = 32;
constexpr unsigned int NO_SETTING = 25;

class Catalogue : public CCommonXmlPxd {
public:
    Catalogue() { CreateMapSystemCommonSettingTags(); }
    const std::string& NameOf(unsigned int id) { return m_XmlTagIDs[id]; }
};

class SystemSettings : public SettingsFixture {
protected:
    // Writes a setting file of the user; there is no installed one unless `file` is its name.
    void WriteUserCopy(const std::vector<std::pair<unsigned int, std::string>>& settings,
                       const std::string& file = "Own.cfg") {
        std::string text = "<cmsystem version=\"1.0\">\n<!-- mine -->";
        for (const auto& [id, value] : settings) {
            const std::string& name = m_names.NameOf(id);
            text.append("<").append(name).append(">").append(value);
            text.append("</").append(name).append(">\n");
        }
        WriteFile(DataFolder() + "/" + file, text + "</cmsystem>");
    }
    // Every setting with a text of its own.
    void WriteFullUserCopy() {
        std::vector<std::pair<unsigned int, std::string>> settings;
        for (unsigned int id = FIRST_SETTING; id <= LAST_SETTING; ++id) {
            if (id != NO_SETTING) {
                settings.emplace_back(id, "/t" + std::to_string(id));
            }
        }
        WriteUserCopy(settings);
    }

    Catalogue m_names;
};

TEST_F(SystemSettings, TheInstalledFileHasThemAll) {
    CCommonXmlPxd xml;
    Bind(xml);
    std::string value;
    for (unsigned int id = 0; id <= LAST_SETTING + 1; ++id) {
        const bool isSetting = id >= FIRST_SETTING && id <= LAST_SETTING && id != NO_SETTING;
        const std::string name = m_names.NameOf(id);
        value = "";
        EXPECT_EQ(isSetting, xml.GetElementValueSysCommSettingFile(id, &value) && !value.empty())
            << name;
        EXPECT_EQ(name.ends_with("Path") || name.ends_with("PathRegident"), value.starts_with("/"))
            << name;
    }
    EXPECT_TRUE(xml.GetSystemSettingFileFullPath(&value));
    EXPECT_EQ(m_contents + "/Resources/CMSystemSetting.cfg", value);
}

TEST_F(SystemSettings, TheUserOverridesSettingBySetting) {
    CCommonXmlPxd xml;
    Bind(xml);
    std::string installed;
    std::string value;
    ASSERT_TRUE(xml.GetServiceName(&installed));
    WriteUserCopy({{3, "7 &lt;s&gt;"}}, "CMSystemSetting.cfg");
    EXPECT_TRUE(xml.GetBaseTick(&value));
    EXPECT_EQ("7 <s>", value);
    EXPECT_EQ("CCommonXmlPxd::GetDBSetting() ERROR: SearchElement(ElementID=2)\n",
              Printed([&] { EXPECT_TRUE(xml.GetServiceName(&value)); }));
    EXPECT_EQ(installed, value);
    WriteUserCopy({{2, ""}}, "CMSystemSetting.cfg");
    EXPECT_TRUE(xml.GetServiceName(&value));
    EXPECT_EQ("", value);
    WriteFile(DataFolder() + "/CMSystemSetting.cfg", "<cmsystem");
    EXPECT_TRUE(xml.GetServiceName(&value));
    EXPECT_EQ(installed, value);
}

TEST_F(SystemSettings, PathsAndTexts) {
    const struct {
        bool (CCommonXmlPxd::*read)(std::string*);
        std::string expected;
        Texts failure;  // what is logged when there are no settings
    } rows[] = {
        {&CCommonXmlPxd::GetServiceName, "/t2", {}},
        {&CCommonXmlPxd::GetBaseTick, "/t3", {}},
        {&CCommonXmlPxd::GetErrLogLevel, "/t30", {}},
        {&CCommonXmlPxd::GetPrinterListFilePath, DataFolder() + "/t16", {}},
        {&CCommonXmlPxd::GetDBSettingFilePath, DataFolder() + "/t18", {}},
        {&CCommonXmlPxd::GetErrLogFilePath, DataFolder() + "/t21", {}},
        {&CCommonXmlPxd::GetScheduledExportSettingFilePath,
         DataFolder() + "/t31",
         {"CommonXmlPxd: invalid parameter.",
          "CommonXmlPxd: GetElementValueSysCommSettingFile() failed."}},
        {&CCommonXmlPxd::GetScheduledExportLogFilePath,
         DataFolder() + "/t32",
         {"CommonXmlPxd: invalid parameter.",
          "CommonXmlPxd: GetElementValueSysCommSettingFile() failed."}},
    };
    CCommonXmlPxd xml;
    Bind(xml, "Own.cfg");
    for (const auto& row : rows) {
        std::string value = "earlier";
        EXPECT_EQ("", Printed([&] {
                      EXPECT_FALSE((xml.*row.read)(nullptr));
                      EXPECT_FALSE((xml.*row.read)(&value));
                  }));
        EXPECT_EQ("earlier", value);
        EXPECT_EQ(row.failure, Logged());
        WriteFullUserCopy();
        EXPECT_TRUE((xml.*row.read)(&value));
        EXPECT_EQ(row.expected, value);
        std::filesystem::remove(DataFolder() + "/Own.cfg");
    }
    std::string path;
    const ScopedVariable notText("XDG_DATA_HOME", "/\xFF");
    EXPECT_FALSE(xml.GetScheduledExportLogFilePath(&path));
    EXPECT_EQ("CommonXmlPxd: CCommonUtility::GetDataFolderBase() failed.", Logged().back());
}

TEST_F(SystemSettings, PipeNames) {
    CCommonXmlPxd xml;
    Bind(xml, "Own.cfg");
    WriteUserCopy({{4, "ai"}, {5, "ao"}, {6, "ci"}, {7, "co"}});
    const std::string pipes = Container() + "/pipe/";
    std::string in;
    std::string out;
    EXPECT_TRUE(xml.GetDetchPipeName(&out));
    EXPECT_EQ(pipes + "bnt2detch", out);
    EXPECT_TRUE(xml.GetBNTPipeName(&in, &out, true));
    EXPECT_EQ(pipes + "ai" + pipes + "ao", in + out);
    EXPECT_TRUE(xml.GetBNTPipeName(&in, &out, false));
    EXPECT_EQ(pipes + "ci" + pipes + "co", in + out);
    EXPECT_FALSE(xml.GetBNTPipeName(nullptr, &out, true));
    EXPECT_FALSE(xml.GetBNTPipeName(&in, nullptr, true));
    WriteUserCopy({{4, "ai"}, {5, std::string(1024, 'o')}, {6, "ci"}});
    EXPECT_FALSE(xml.GetBNTPipeName(&in, &out, true));
    EXPECT_EQ(
        (Texts{"CommonXmlPxd: invalid parameter.", "CommonXmlPxd: invalid parameter.",
               "CommonUtility: PathAppend() failed.", "CommonXmlPxd: CreatePipeName() failed."}),
        Logged());
    EXPECT_FALSE(xml.GetBNTPipeName(&in, &out, false));  // there is no name for the outbound one
    EXPECT_EQ(pipes + "ci" + pipes + "co", in + out);
}

TEST_F(SystemSettings, RetryData) {
    CCommonXmlPxd xml;
    Bind(xml, "Own.cfg");
    WriteUserCopy({{10, "3x"},
                   {11, ""},
                   {12, " -4"},
                   {14, "x5"},
                   {15, "2147483647"},
                   {26, "6"},
                   {27, "+7"},
                   {28, "8"}});
    int read[9];
    std::iota(std::begin(read), std::end(read), 100);
    const auto readAll = [&](int* last) {
        return xml.GetRetryData(&read[0], &read[1], &read[2], &read[3], &read[4], &read[5],
                                &read[6], &read[7], last);
    };
    EXPECT_TRUE(readAll(&read[8]));
    // The fourth is not in the file.
    EXPECT_EQ((std::vector<int>{3, 0, -4, 103, 0, 2147483647, 6, 7, 8}),
              std::vector<int>(std::begin(read), std::end(read)));
    WriteUserCopy({{10, "11"}});
    EXPECT_FALSE(readAll(nullptr)) << "the last that was asked for decides";
    EXPECT_EQ(11, read[0]);
    EXPECT_EQ(7, read[7]);
    EXPECT_FALSE(xml.GetRetryData(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                                  nullptr, nullptr));
}

TEST_F(SystemSettings, AreCopiedIntoMessages) {
    CCommonXmlPxd xml;
    Bind(xml, "Own.cfg");
    WriteFullUserCopy();
    void* root = xml.OpenXml("/xmls/DBSettingBase.xml", true);
    ASSERT_NE(nullptr, root);
    unsigned int err = 0;
    std::string value;
    for (unsigned int id = 0; id <= 40; ++id) {
        EXPECT_TRUE(xml.SetElementBySettingValue(root, 110, "earlier"));
        const bool isCopied = id >= 4 && id <= 28 && id != NO_SETTING;
        EXPECT_EQ(isCopied, xml.SetElementBySysComSettingValue(root, 110, id)) << id;
        EXPECT_TRUE(xml.GetElementValueWithSearch(root, 110, true, &value, &err));
        const std::string text = "/t" + std::to_string(id);
        EXPECT_EQ(!isCopied ? "earlier" : id >= 18 && id <= 22 ? DataFolder() + text : text, value);
    }
    EXPECT_EQ(Texts{}, Logged());
    EXPECT_FALSE(xml.SetElementBySysComSettingValue(root, 4, 4));
    EXPECT_FALSE(xml.SetElementBySysComSettingValue(nullptr, 110, 4));
    WriteUserCopy({{5, "x"}});
    EXPECT_FALSE(xml.SetElementBySysComSettingValue(root, 110, 4));
    EXPECT_EQ(Texts{"CommonXmlPxd: GetElementValueSysCommSettingFile() failed."}, Logged());
    xml.DeleteNode(root);
    xml.CloseXml();
}

}  // namespace
