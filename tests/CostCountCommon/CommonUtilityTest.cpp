#include "CostCountCommon/CommonUtility.h"

#include <gtest/gtest.h>

#include "CostCountCommon/include/MacUtility.h"
#include "compatible/osFree.h"
#include "tests/CostCountCommon/SettingsFixture.h"
#include "tests/support/FailingAllocation.h"

namespace {

constexpr const char* KEY = "SOFTWARE\\Norvane\\Tallyquist";

class CommonUtility : public SettingsFixture {};

TEST_F(CommonUtility, EachKindOfDataHasItsFolder) {
    const std::string local = m_folder.Path("data/Norvane/Tallyquist");
    const std::string machine = "/Library/Application Support/Norvane/Tallyquist";
    const std::string folders[] = {
        DataFolder(), DataFolder(), local,        local,   DataFolder(), local,      DataFolder(),
        DataFolder(), DataFolder(), DataFolder(), machine, DataFolder(), Container()};
    std::string folder;
    unsigned int kind = 0;
    for (const std::string& expected : folders) {
        EXPECT_TRUE(CCommonUtility::GetDataFolderBase(kind, &folder));
        EXPECT_EQ(expected, folder) << kind;
        ++kind;
    }
    EXPECT_FALSE(CCommonUtility::GetDataFolderBase(kind, &folder));
    EXPECT_FALSE(CCommonUtility::GetDataFolderBase(0, nullptr));
    const ScopedVariable notText("XDG_DATA_HOME", "/\xFF");
    EXPECT_FALSE(CCommonUtility::GetDataFolderBase(0, &folder));
    EXPECT_EQ(
        (Texts{"CommonUtility: receive illegal type. type=13", "CommonUtility: invalid parameter.",
               "CommonUtility: GetApplicationDataGroupContainerAppSupportPath() failed."}),
        Logged());
}

TEST_F(CommonUtility, PipeNames) {
    std::string name;
    // 1023 characters fit.
    const size_t group = std::string("/K7Q3MZP2WD.RX.qvtrel").size();
    const struct {
        size_t containerLength;
        const char* base;
        const char* failure;
    } rows[] = {
        {1023 - 7, "x", nullptr},
        {1023 - 6, "x", "CommonUtility: PathAppend() failed."},
        {1023 - 5, "", nullptr},
        {1024, "", "CommonUtility: U_STRCPY_S() failed. 34"},
    };
    for (const auto& row : rows) {
        const std::string data = "/" + std::string(row.containerLength - group - 1, 'd');
        const ScopedVariable longData("XDG_DATA_HOME", data.c_str());
        name = "earlier";
        EXPECT_EQ(row.failure == nullptr, CCommonUtility::CreatePipeName(row.base, &name));
        EXPECT_EQ(row.failure == nullptr ? 1023 : 7, name.size());
        EXPECT_EQ(row.failure == nullptr ? Texts{} : Texts{row.failure}, Logged());
    }
    EXPECT_TRUE(CCommonUtility::CreatePipeName("bnt2detch", &name));
    EXPECT_EQ(Container() + "/pipe/bnt2detch", name);
    EXPECT_FALSE(CCommonUtility::CreatePipeName("x", nullptr));
    const ScopedVariable notText("XDG_DATA_HOME", "/\xFF");
    EXPECT_FALSE(CCommonUtility::CreatePipeName("x", &name));
    EXPECT_EQ((Texts{"CommonUtility: invalid parameter.",
                     "CommonUtility: GetApplicationDataGroupContainerPath() failed.",
                     "CommonUtility: GetDataFolderBase() failed."}),
              Logged());
}

TEST_F(CommonUtility, TemporaryFiles) {
    std::string text;
    EXPECT_TRUE(CCommonUtility::GetTempFileName("job", -12, "xml", &text));
    EXPECT_EQ("job.-12.xml", text);
    EXPECT_TRUE(CCommonUtility::GetTempFilePath("job", 3, "xml", &text));
    EXPECT_EQ(m_folder.Path("tmp/Norvane/job.3.xml"), text);
    EXPECT_FALSE(CCommonUtility::GetTempFolderPath(nullptr));
    EXPECT_FALSE(CCommonUtility::GetTempFileName("job", 3, "xml", nullptr));
    EXPECT_FALSE(CCommonUtility::GetTempFilePath("job", 3, "xml", nullptr));
    EXPECT_EQ(Texts(3, "CommonUtility: invalid parameter."), Logged());
}

TEST_F(CommonUtility, LogsOfConnectionsAreDeleted) {
    const std::string logs = DataFolder() + "/logs/join/";
    EXPECT_TRUE(CCommonUtility::DeleteConnectionJobLog("00:1B"));
    std::filesystem::create_directories(logs + "taken/inside");
    WriteFile(logs + "001B", "log");
    EXPECT_TRUE(CCommonUtility::DeleteConnectionJobLog("00:1B"));
    EXPECT_FALSE(std::filesystem::exists(logs + "001B"));
    EXPECT_FALSE(CCommonUtility::DeleteConnectionJobLog("taken"));
    EXPECT_FALSE(CCommonUtility::DeleteConnectionJobLog(nullptr));
    WriteFile(logs + "../kept", "");
    EXPECT_FALSE(CCommonUtility::DeleteConnectionJobLog("::"));
    EXPECT_FALSE(CCommonUtility::DeleteConnectionJobLog("../kept"));
    EXPECT_TRUE(std::filesystem::exists(logs + "../kept"));
    const std::string failure = "CommonUtility: _tremove() failed. connectJobLogPath=" + logs;
    const std::string invalid = " " + std::to_string(EINVAL);
    EXPECT_EQ(
        (Texts{failure + "taken " + std::to_string(ENOTEMPTY), "CommonUtility: pPrinterId is NULL.",
               failure + invalid, failure + "../kept" + invalid}),
        Logged());
}

TEST_F(CommonUtility, TheSettingsStoreHasOneKey) {
    const std::string preference = "ErrorLogConfirmTime";
    std::string value = "earlier";
    for (const std::string key : {"SOFTWARE\\Norvane", "software\\norvane\\tallyquist"}) {
        EXPECT_FALSE(CCommonUtility::GetRegistryValue(key, "systemsetting_path", &value));
        EXPECT_FALSE(CCommonUtility::GetRegistryHKCUValue(key, preference, &value));
        EXPECT_FALSE(CCommonUtility::SetRegistryValue(key, preference, "1"));
    }
    EXPECT_FALSE(CCommonUtility::GetRegistryHKCUValue(KEY, "systemsetting_path", &value));
    EXPECT_FALSE(CCommonUtility::SetRegistryValue(KEY, "systemsetting_path", "1"));
    EXPECT_FALSE(CCommonUtility::GetRegistryValue(KEY, "systemsetting_path", nullptr));
    EXPECT_EQ(Texts(9, "CommonUtility: invalid parameter."), Logged());
    EXPECT_FALSE(CCommonUtility::GetRegistryValue(KEY, "no_such_path", &value));
    EXPECT_EQ(Texts{"CommonUtility: GetPluginFilePath() failed."}, Logged());
    EXPECT_EQ("earlier", value);

    EXPECT_TRUE(CCommonUtility::SetRegistryValue(KEY, preference, "1700000000"));
    for (auto* const get :
         {CCommonUtility::GetRegistryHKCUValue, CCommonUtility::GetRegistryValue}) {
        value.clear();
        EXPECT_TRUE(get(KEY, preference, &value));
        EXPECT_EQ("1700000000", value);
    }
    EXPECT_EQ(Texts{}, Logged());
}

TEST_F(CommonUtility, PathsByKind) {
    unsigned int kind = 0;
    for (const char* value :
         {"systemsetting_path", "bnt_path", "detch_path", "sconp_path", "velsJoblog_path",
          "velsMedia_path", "xmlParser_path", "admutil_path", "install_path", "velsdevice_path",
          "joblogdriver_path", "applogger_path", "PDiscovery_path", "JobCostExporter_path",
          "velsPrint_path", "velsCounter_path", "ipTracker_path"}) {
        std::string expected;
        EXPECT_TRUE(GetPluginFilePath(value, &expected)) << value;
        EXPECT_EQ(expected,
                  CCommonUtility::GetLibPath(static_cast<CCommonUtility::PATH_KIND>(kind++)));
    }
    EXPECT_EQ("", CCommonUtility::GetLibPath(static_cast<CCommonUtility::PATH_KIND>(kind)));
}

TEST_F(CommonUtility, ForwardsToTheSystem) {
    const std::string file = m_folder.Path("new/er/x.cfg");
    EXPECT_TRUE(CCommonUtility::CreateFolder(m_folder.Path("new")));
    for (int i = 0; i < 2; ++i) {  // the folder and the file are new, then exist
        EXPECT_EQ(i > 0, CCommonUtility::CheckFileExists(file));
        EXPECT_TRUE(CCommonUtility::CreateIfFolderIsNotExists(m_folder.Path("new"), "er"));
        EXPECT_TRUE(CCommonUtility::CopyTQUsingFile(BUILT_CONTENTS "/Info.plist", file));
    }
    EXPECT_FALSE(CCommonUtility::CreateIfFolderIsNotExists(m_folder.Path("new/er"), "x.cfg"));
    Texts names;
    CCommonUtility::GetFileList(m_folder.Path("new/er/*.cfg"), names);
    EXPECT_EQ(Texts{"x.cfg"}, names);
    EXPECT_EQ(1, CCommonUtility::ExecuteProcess("/bin/false", ""));
    EXPECT_EQ(-1, CCommonUtility::StartProcessAsMidiumRid(file, ""));
    Logged();
    EXPECT_FALSE(CCommonUtility::CreateEvent(nullptr));
    EXPECT_FALSE(CCommonUtility::StartThread(nullptr, nullptr, nullptr));
    EXPECT_EQ(Texts(2, "CommonUtility: invalid parameter."), Logged());
}

// Of what a whole operation is not made of.
TEST_F(CommonUtility, NothingLeavesItWhenMemoryIsExhausted) {
    std::string text;
    const std::string key = KEY;
    const std::string name = "a name that is not short";
    const FailingAllocation failing(1);
    EXPECT_FALSE(CCommonUtility::DeleteConnectionJobLog("x"));
    EXPECT_FALSE(CCommonUtility::GetRegistryValue(key, name, &text));
    EXPECT_FALSE(CCommonUtility::CreateIfFolderIsNotExists(name, name));
}

}  // namespace
