#include <gtest/gtest.h>

#include <numeric>

#include "tests/CostCountCommon/SettingsFixture.h"

namespace {

class Catalogue : public CCommonXmlPxd {
public:
    const std::string& NameOf(unsigned int id) { return m_XmlTagIDs[id]; }
};

class SystemSettings : public SettingsFixture {
protected:
    void SetUp() override {
        SettingsFixture::SetUp();
        m_names.CreateMapSystemCommonSettingTags();
    }

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
        for (unsigned int id = 2; id <= 32; ++id) {
            if (id != 25) {
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
    std::string path;
    ASSERT_TRUE(xml.GetSystemSettingFileFullPath(&path));
    EXPECT_EQ(m_contents + "/Resources/CMSystemSetting.cfg", path);
    void* document = nullptr;
    void* root = xml.OpenXml(path, &document);
    ASSERT_NE(nullptr, root);
    unsigned int err = 0;
    CCommonXmlPxdElementData* first = nullptr;
    EXPECT_TRUE(xml.GetElements(root, &first, &err));
    unsigned int id = 1;
    for (const auto* data = first; data != nullptr; data = data->m_Next) {
        id += id == 24 ? 2 : 1;
        EXPECT_EQ(id, data->m_ElementID);
        EXPECT_NE("", data->m_Values.front()) << data->m_Name;
        EXPECT_EQ(data->m_Name.ends_with("Path") || data->m_Name.ends_with("PathRegident"),
                  data->m_Values.front().starts_with("/"))
            << data->m_Name;
    }
    EXPECT_EQ(32U, id);
    xml.releaseElementData(first);
    xml.DeleteNode(root);
    xml.CloseXml(document);
}

TEST_F(SystemSettings, EveryTemplateOpens) {
    int count = 0;
    CCommonXmlPxd xml;
    Bind(xml);
    const std::string resources = CorePlugin() + "/Contents/Resources";
    for (const auto& file : std::filesystem::directory_iterator(resources + "/xmls")) {
        const std::string name = "/xmls/" + file.path().filename().string();
        void* root = xml.OpenXml(name, true);
        ASSERT_NE(nullptr, root) << name;
        unsigned int err = 0;
        CCommonXmlPxdElementData data;
        EXPECT_TRUE(xml.GetElementData(root, &data, &err)) << name;
        EXPECT_EQ(xml.hasAttribute(data.m_ElementID), data.m_AttributeIDs.size()) << name;
        if (name.ends_with("DBSettingBase.xml") || name.ends_with("db_settings")) {
            EXPECT_EQ(108U, data.m_ElementID);
            ++count;
        }
        xml.DeleteNode(root);
    }
    EXPECT_EQ(2, count);
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

TEST_F(SystemSettings, WhatCannotBeReadLeavesTheOutputAlone) {
    std::string value = "earlier";
    CCommonXmlPxd unbound;
    EXPECT_EQ("", Printed([&] {
                  EXPECT_FALSE(unbound.GetServiceName(&value));
                  EXPECT_FALSE(unbound.GetSystemSettingFileFullPath(&value));
                  EXPECT_FALSE(unbound.GetBNTPipeName(nullptr, nullptr, true));
                  EXPECT_FALSE(unbound.GetDetchPipeName(&value));
                  EXPECT_FALSE(unbound.GetErrLogFilePath(&value));
                  EXPECT_FALSE(unbound.GetScheduledExportLogFilePath(nullptr));
                  EXPECT_FALSE(unbound.SetElementBySysComSettingValue(nullptr, 109, 4));
              }));
    CCommonXmlPxd xml;
    Bind(xml, "NoSuch.cfg");
    EXPECT_EQ("", Printed([&] {
                  EXPECT_FALSE(xml.GetErrLogLevel(&value));
                  EXPECT_FALSE(xml.GetServiceName(nullptr));
                  EXPECT_FALSE(xml.GetPrinterListFilePath(&value));
                  EXPECT_FALSE(xml.GetPrinterListFilePath(nullptr));
                  EXPECT_FALSE(xml.GetBNTPipeName(&value, &value, true));
              }));
    EXPECT_EQ(Texts{}, Logged());
    for (const unsigned int id : {0U, 25U, 203U, 0xFFFFFFFFU}) {
        EXPECT_FALSE(xml.GetElementValueSysCommSettingFile(id, &value));
    }
    EXPECT_EQ("earlier", value);
    EXPECT_TRUE(xml.GetDetchPipeName(&value));
    EXPECT_EQ(Container() + "/pipe/bnt2detch", value);
}

TEST_F(SystemSettings, PathsAndTexts) {
    CCommonXmlPxd xml;
    Bind(xml, "Own.cfg");
    WriteFullUserCopy();
    const struct {
        bool (CCommonXmlPxd::*read)(std::string*);
        std::string expected;
    } rows[] = {
        {&CCommonXmlPxd::GetServiceName, "/t2"},
        {&CCommonXmlPxd::GetBaseTick, "/t3"},
        {&CCommonXmlPxd::GetErrLogLevel, "/t30"},
        {&CCommonXmlPxd::GetPrinterListFilePath, DataFolder() + "/t16"},
        {&CCommonXmlPxd::GetDBSettingFilePath, DataFolder() + "/t18"},
        {&CCommonXmlPxd::GetErrLogFilePath, DataFolder() + "/t21"},
        {&CCommonXmlPxd::GetScheduledExportSettingFilePath, DataFolder() + "/t31"},
        {&CCommonXmlPxd::GetScheduledExportLogFilePath, DataFolder() + "/t32"},
    };
    std::string value;
    for (const auto& row : rows) {
        EXPECT_TRUE((xml.*row.read)(&value));
        EXPECT_EQ(row.expected, value);
    }
}

TEST_F(SystemSettings, ScheduledExportPathsLogTheirFailures) {
    CCommonXmlPxd xml;
    Bind(xml, "NoSuch.cfg");
    std::string path = "earlier";
    for (const auto read : {&CCommonXmlPxd::GetScheduledExportSettingFilePath,
                            &CCommonXmlPxd::GetScheduledExportLogFilePath}) {
        EXPECT_FALSE((xml.*read)(nullptr));
        EXPECT_FALSE((xml.*read)(&path));
        EXPECT_EQ((Texts{"CommonXmlPxd: invalid parameter.",
                         "CommonXmlPxd: GetElementValueSysCommSettingFile() failed."}),
                  Logged());
        const ScopedVariable notText("XDG_DATA_HOME", "/\xFF");
        EXPECT_FALSE((xml.*read)(&path));
        EXPECT_EQ("CommonXmlPxd: CCommonUtility::GetDataFolderBase() failed.", Logged().back());
    }
    EXPECT_EQ("earlier", path);
}

TEST_F(SystemSettings, PipeNames) {
    CCommonXmlPxd xml;
    Bind(xml, "Own.cfg");
    WriteUserCopy({{4, "ai"}, {5, "ao"}, {6, "ci"}, {7, "co"}});
    const std::string pipes = Container() + "/pipe/";
    std::string in;
    std::string out;
    EXPECT_TRUE(xml.GetBNTPipeName(&in, &out, true));
    EXPECT_EQ(pipes + "ai" + pipes + "ao", in + out);
    EXPECT_TRUE(xml.GetBNTPipeName(&in, &out, false));
    EXPECT_EQ(pipes + "ci" + pipes + "co", in + out);
    EXPECT_FALSE(xml.GetBNTPipeName(nullptr, &out, true));
    EXPECT_FALSE(xml.GetBNTPipeName(&in, nullptr, true));
    EXPECT_EQ(Texts(2, "CommonXmlPxd: invalid parameter."), Logged());

    WriteUserCopy({{4, "ai"}, {5, std::string(1024, 'o')}, {6, "ci"}});
    EXPECT_FALSE(xml.GetBNTPipeName(&in, &out, true));
    EXPECT_EQ(
        (Texts{"CommonUtility: PathAppend() failed.", "CommonXmlPxd: CreatePipeName() failed."}),
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
    EXPECT_FALSE(readAll(nullptr));
    EXPECT_EQ(11, read[0]);
    EXPECT_EQ(7, read[7]);
    EXPECT_TRUE(xml.GetRetryData(&read[1], nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                                 nullptr, nullptr));
    EXPECT_EQ(11, read[1]);
    CountingParser::Reset();
    EXPECT_FALSE(xml.GetRetryData(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                                  nullptr, nullptr));
    EXPECT_EQ(0, CountingParser::CallCount("CreateDocByFile"));
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
        const bool isCopied = id >= 4 && id <= 28 && id != 25;
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

TEST_F(SystemSettings, AnyFailedCallOfThePluginIsAFailure) {
    CCommonXmlPxd xml;
    Bind(xml, "Own.cfg");
    WriteUserCopy({{2, "/t2"}, {18, "/t18"}});
    std::string value = "earlier";
    EXPECT_TRUE(FailEachCall([&] { return xml.GetElementValueSysCommSettingFile(18, &value); },
                             [&] { EXPECT_EQ("earlier", value); }));
    EXPECT_EQ("/t18", value);

    void* root = xml.OpenXml("/xmls/DBSettingBase.xml", true);
    unsigned int err = 0;
    EXPECT_TRUE(FailEachCall([&] { return xml.SetElementBySysComSettingValue(root, 110, 18); },
                             [&] {
                                 xml.GetElementValueWithSearch(root, 110, true, &value, &err);
                                 EXPECT_EQ("", value);
                             }));
    xml.DeleteNode(root);
    xml.CloseXml();

    // The installed copy makes good what fails in the user's, and the other way round.
    CCommonXmlPxd both;
    Bind(both);
    std::string installed;
    EXPECT_TRUE(both.GetServiceName(&installed));
    WriteUserCopy({{2, "mine"}}, "CMSystemSetting.cfg");
    for (int n = 1; value != "mine"; ++n) {
        CountingParser::Fail("", n, XMLPXD_OUT_OF_MEMORY);
        EXPECT_TRUE(both.GetServiceName(&value));
        EXPECT_EQ(CountingParser::HasFailed() ? installed : "mine", value);
    }
}

}  // namespace
