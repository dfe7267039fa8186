#include <gtest/gtest.h>

#include "CostCountCommon/CommonUtility.h"
#include "CostCountCommon/NamedLock.h"
#include "tests/CostCountCommon/SettingsFixture.h"
#include "tests/support/Processes.h"

namespace {

namespace fs = std::filesystem;

constexpr unsigned int NOT_CREATED = 0xFFFFFFFF;

class DbSettings : public SettingsFixture {
protected:
    void SetUp() override {
        SettingsFixture::SetUp();
        Bind(m_xml);
    }

    // What lies in the folder of the settings.
    Texts Files() const {
        Texts names;
        for (const auto& entry : fs::directory_iterator(DataFolder())) {
            names.push_back(entry.path().filename());
        }
        return names;
    }
    std::string File() const { return DataFolder() + "/db_settings"; }

    // The path and the volume that the file holds, or "none", which leaves the outputs alone.
    std::string Read() {
        std::string path = "earlier";
        std::string volume = "earlier";
        const bool isRead = m_xml.GetDBSetting(DataFolder(), &path, &volume);
        EXPECT_TRUE(isRead || path + volume == "earlierearlier");
        return isRead ? path + "|" + volume : "none";
    }

    CCommonXmlPxd m_xml;
};

TEST_F(DbSettings, SurviveTheTripThroughTheFile) {
    EXPECT_EQ(0U, m_xml.CreateDBSettingFile(DataFolder(), " /a&<b>\"\r\n\u00DF ", "]]> 1"));
    EXPECT_EQ(" /a&<b>\"\r\n\u00DF |]]> 1", Read());
    EXPECT_EQ(0U, CCommonUtility::CreateDBSettingFile(DataFolder(), "/p", "2"));
    std::string path;
    std::string volume;
    EXPECT_TRUE(CCommonUtility::GetDBSetting(DataFolder(), &path, &volume));
    EXPECT_EQ("/p2", path + volume);
    EXPECT_EQ(Texts{"db_settings"}, Files());
    EXPECT_EQ("/db_settings", CCommonUtility::GetDBSettingsFileName());
    EXPECT_EQ(CorePlugin() + "/Contents/Resources/xmls/db_settings",
              CCommonUtility::GetDefaultDBSettingsFilePath());
}

TEST_F(DbSettings, AreNotWrittenUnlessAllIsWell) {
    const std::string named = "CCommonXmlPxd::CreateDBSettingFile() ERROR: ";
    const std::string refused =
        "CCommonXmlPxd::SetElementBySettingValue() ERROR: SetElementValue(2) errCode = 7\n" + named;
    const struct {
        std::string path, volume, printed;
    } rows[] = {
        {"", "0", named + "PARAMETER\n"},
        {"/p", "", named + "PARAMETER\n"},
        {"\x01", "0", refused + "SetElementBySettingValue(joblogdb_path)\n"},
        {"/p", "\xFF", refused + "SetElementBySettingValue(joblogdb_volume)\n"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(row.printed, Printed([&] {
                      EXPECT_EQ(NOT_CREATED,
                                m_xml.CreateDBSettingFile(DataFolder(), row.path, row.volume));
                  }));
    }
    EXPECT_EQ(NOT_CREATED, m_xml.CreateDBSettingFile(DataFolder() + "/none", "/p", "0"));
    fs::remove(CorePlugin());
    EXPECT_EQ(named + "OpenXml() PATH=/xmls/DBSettingBase.xml\n", Printed([&] {
                  EXPECT_EQ(NOT_CREATED, m_xml.CreateDBSettingFile(DataFolder(), "/p", "0"));
              }));
    EXPECT_EQ(Texts{}, Files());

    EXPECT_EQ(NOT_CREATED, CCommonUtility::CreateDBSettingFile(DataFolder(), "", "0"));
    EXPECT_EQ(Texts{"CommonUtility: failed to create joblogDB settings."}, Logged());
}

TEST_F(DbSettings, AreReadWholeOrNotAtAll) {
    std::string text;
    const std::string parameter = "CCommonXmlPxd::GetDBSetting() ERROR: PARAMETER\n";
    EXPECT_EQ(parameter + parameter, Printed([&] {
                  EXPECT_FALSE(m_xml.GetDBSetting(DataFolder(), nullptr, &text));
                  EXPECT_FALSE(m_xml.GetDBSetting(DataFolder(), &text, nullptr));
              }));
    EXPECT_EQ("CCommonXmlPxd::GetDBSetting() ERROR: OpenXml() PATH=/db_settings\n",
              Printed([&] { EXPECT_EQ("none", Read()); }));
    WriteFile(File(), "<joblogdbsetting><joblogdb_path>/p</joblogdb_path></joblogdbsetting>");
    EXPECT_EQ("CCommonXmlPxd::GetDBSetting() ERROR: SearchElement(ElementID=110)\n",
              Printed([&] { EXPECT_EQ("none", Read()); }));
    EXPECT_FALSE(CCommonUtility::GetDBSetting(DataFolder(), nullptr, &text));
    EXPECT_FALSE(CCommonUtility::GetDBSetting(DataFolder(), &text, nullptr));
    EXPECT_FALSE(CCommonUtility::GetDBSetting(DataFolder(), &text, &text));
    EXPECT_EQ((Texts{"CommonUtility: invalid parameter.", "CommonUtility: invalid parameter.",
                     "CommonUtility: failed to get joblogDB settings."}),
              Logged());
}

TEST_F(DbSettings, OneValueAndItsCopyIntoAMessage) {
    std::string value = "earlier";
    const auto print = [&](unsigned int id) {
        return Printed([&] { EXPECT_FALSE(m_xml.GetElementValueDBSettingFile(id, &value)); });
    };
    EXPECT_EQ("OpenXml() failed. dbSttingFile[" + File() + "]\n", print(109));
    m_xml.CreateDBSettingFile(DataFolder(), "/p", "3");
    EXPECT_EQ(
        "CCommonXmlPxd::SearchParentElement() ERROR: GetNextSibling() errcode=1\n"
        "SearchParentElement() failed.\n",
        print(108));
    CountingParser::Fail("GetElementText", 3, 6);  // the first two read where the file lies
    EXPECT_EQ("GetElementData() failed.\n", print(110));
    EXPECT_FALSE(m_xml.GetElementValueDBSettingFile(109, nullptr));
    EXPECT_EQ("earlier", value);
    EXPECT_TRUE(m_xml.GetElementValueDBSettingFile(110, &value));
    EXPECT_EQ("3", value);

    void* root = m_xml.OpenXml("/xmls/DBSettingBase.xml", true);
    unsigned int err = 0;
    EXPECT_FALSE(m_xml.SetElementByDBSettingValue(root, 109, 108));
    EXPECT_FALSE(m_xml.SetElementByDBSettingValue(root, 109, 111));
    EXPECT_EQ(Texts{}, Logged());
    EXPECT_TRUE(m_xml.SetElementByDBSettingValue(root, 109, 110));
    EXPECT_TRUE(m_xml.SetElementByDBSettingValue(root, 110, 109));
    EXPECT_TRUE(m_xml.GetElementValueWithSearch(root, 109, true, &value, &err));
    EXPECT_EQ("3", value);
    EXPECT_TRUE(m_xml.GetElementValueWithSearch(root, 110, true, &value, &err));
    EXPECT_EQ("/p", value);
    fs::remove(File());
    EXPECT_FALSE(m_xml.SetElementByDBSettingValue(root, 109, 110));
    EXPECT_EQ(Texts{"CommonXmlPxd: GetElementValueDBSettingFile() failed."}, Logged());
    m_xml.DeleteNode(root);
    m_xml.CloseXml();
}

TEST_F(DbSettings, ANewFileGetsTheDefaultPathAndWhatIsThereStays) {
    EXPECT_TRUE(CCommonUtility::CheckDBSettingFile(""));
    EXPECT_EQ(DataFolder() + "/joblog|0", Read());
    WriteFile(File(), "as it was");
    EXPECT_TRUE(CCommonUtility::CheckDBSettingFile(DataFolder()));
    EXPECT_EQ("as it was", ReadFile(File()));
    m_xml.CreateDBSettingFile(DataFolder(), "/p", "3");
    EXPECT_TRUE(CCommonUtility::initializeDBPath(DataFolder()));
    EXPECT_EQ("/p|3", Read());
}

TEST_F(DbSettings, AFileThatCannotBeFilledGoesAgain) {
    EXPECT_FALSE(CCommonUtility::CheckDBSettingFile(DataFolder() + "/none"));
    EXPECT_EQ(Texts{"CommonUtility: CheckFolderExists() failed."}, Logged());
    {
        const ScopedVariable longData("XDG_DATA_HOME", ("/" + std::string(960, 'd')).c_str());
        EXPECT_FALSE(CCommonUtility::CheckDBSettingFile(DataFolder()));
        EXPECT_EQ(Texts{"CommonUtility: PathAppend failed."}, Logged());
        const ScopedVariable notText("XDG_DATA_HOME", "/\xFF");
        EXPECT_FALSE(CCommonUtility::CheckDBSettingFile(DataFolder()));
        EXPECT_EQ("CommonUtility: failed to get joblogDB base path.", Logged().back());
    }
    fs::remove(Parser());
    EXPECT_FALSE(CCommonUtility::CheckDBSettingFile(DataFolder()));
    EXPECT_EQ((Texts{"CommonUtility: pCmXmlPxd Initialization failed.",
                     "CommonUtility: GetDBSetting() failed."}),
              Logged());
    EXPECT_EQ(Texts{}, Files());

    fs::create_symlink("nowhere", File());
    EXPECT_FALSE(CCommonUtility::CheckDBSettingFile(DataFolder()));
    EXPECT_EQ(Texts{"CommonUtility: CopyFile() failed."}, Logged());
    EXPECT_TRUE(fs::is_symlink(File()));
}

TEST_F(DbSettings, MovingIsKnownByItsLock) {
    const Turn turn("DBMOVE");
    EXPECT_FALSE(CCommonUtility::IsJobLogDBMoving());
    CNamedLock lock;
    ASSERT_EQ(CNamedLock::LOCKED, lock.Lock("K7Q3MZP2WD.RX.qvtrel/DBMOVE", 0));
    EXPECT_TRUE(CCommonUtility::IsJobLogDBMoving());
    lock.Unlock();
    EXPECT_FALSE(CCommonUtility::IsJobLogDBMoving());
}

}  // namespace
