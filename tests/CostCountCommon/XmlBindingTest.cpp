#include <cstdio>
#include <cstring>
#include <set>

#include "CostCountCommon/CMLibLogger.h"
#include "tests/CostCountCommon/BoundXml.h"
#include "tests/support/RecordingLogger.h"
#include "tests/support/TempFolder.h"

namespace {

constexpr unsigned int FAILED = 0xFFFFFFFF;

class Unbound : public CCommonXmlPxd {
public:
    using CCommonXmlPxd::m_FunctionsXmlPxd;
    using CCommonXmlPxd::m_XmlTagIDs;
};

// The numbers of the filled slots of the table, from 1.
std::set<size_t> FilledSlots(const XMLPXD_FUNCLIST& table) {
    void* slots[sizeof table / sizeof(void*)];
    std::memcpy(slots, &table, sizeof table);
    std::set<size_t> filled;
    for (size_t slot = 0; slot < std::size(slots); ++slot) {
        if (slots[slot] != nullptr) {
            filled.insert(slot + 1);
        }
    }
    return filled;
}

TEST(XmlBinding, EntriesAreLookedUpUntilTheFirstThatIsMissing) {
    CCMLibLogger::getInstance()->InitLibLogger("n", "o", "m", RECORDING_LOGGER);
    const std::set<size_t> alwaysThere = {1,  2,  4,  5,  6,  9,  10, 11, 12, 13, 14,
                                          15, 16, 17, 19, 23, 25, 26, 27, 28, 31};
    const auto with = [&](std::set<size_t> more) {
        more.insert(alwaysThere.begin(), alwaysThere.end());
        return more;
    };
    const struct {
        std::string lacking;
        std::set<size_t> filled;
        bool isLogged;
    } rows[] = {
        {"Save", {1, 2, 4, 5}, false},      {"SelectNodesInElement", alwaysThere, true},
        {"CreateNewDoc", with({33}), true}, {"RemoveElement", with({33, 3}), true},
        {"", with({33, 3, 21}), false},
    };
    for (const auto& row : rows) {
        TakeRecordedCalls();
        Unbound xml;
        EXPECT_TRUE(xml.InitializeXmlPxd(
            "settings", "/",
            row.lacking.empty() ? COUNTING_PARSER : PARSER_WITHOUT + row.lacking + ".so", false));
        EXPECT_EQ(row.filled, FilledSlots(*xml.m_FunctionsXmlPxd)) << row.lacking;
        EXPECT_EQ(201U, xml.m_XmlTagIDs.size()) << "known all the same";
        const auto lines = TakeRecordedLines();
        ASSERT_EQ(row.isLogged ? 1U : 0U, lines.size()) << row.lacking;
        if (row.isLogged) {
            EXPECT_EQ((RecordedLine{"CommonXmlPxd", lines[0].line, 'e', 1,
                                    "CCommonXmlPxd::LoadAPIsXmlPxd() ERROR: " + row.lacking}),
                      lines[0]);
        }
    }
}

TEST(XmlBinding, TakesAnEmptyObjectANameAndAParser) {
    TempFolder folder;
    WriteFile(folder.Path("text.so"), "no shared object");
    const std::string parser = COUNTING_PARSER;
    const std::string front = parser.substr(0, parser.size() - 6);
    const std::string rest = parser.substr(parser.size() - 6);
    const struct {
        const char* setting;
        std::string install;
        std::string parser;
        bool join;
        bool isBound;
    } rows[] = {
        {"", "/", parser, false, false},
        {"s", "", parser, false, false},
        {"s", "/", folder.Path("missing.so"), false, false},
        {"s", "/", folder.Path("text.so"), false, false},
        {"s", "/nowhere", parser, false, true},
        {"s", "/nowhere", parser, true, false},
        {"s", front, rest, true, true},
    };
    Unbound xml;  // a failure leaves it as it was
    for (const auto& row : rows) {
        const auto bind = [&] {
            return xml.InitializeXmlPxd(row.setting, row.install, row.parser, row.join);
        };
        EXPECT_EQ(row.isBound, bind()) << row.install << " " << row.parser;
        EXPECT_EQ(row.isBound, xml.m_FunctionsXmlPxd != nullptr);
        EXPECT_FALSE(row.isBound && bind()) << "bound a second time";
        xml.FinishXmlPxd();
    }
}

TEST(XmlBinding, FinishingClosesTheObjectsOwnDocument) {
    TempFolder folder;
    WriteFile(folder.Path("a.xml"), "<cmsystem/>");
    BoundXml xml;
    const XMLPXD_FUNCLIST functions = *xml.m_FunctionsXmlPxd;
    void* callers = nullptr;
    void* callersRoot = xml.OpenXml(folder.Path("a.xml"), &callers);
    xml.DeleteNode(xml.OpenXml(folder.Path("a.xml"), false));
    EXPECT_EQ(2, CountingParser::LiveDocuments());
    xml.FinishXmlPxd();
    EXPECT_EQ(1, CountingParser::LiveDocuments());
    EXPECT_EQ(nullptr, xml.m_FunctionsXmlPxd);
    xml.FinishXmlPxd();  // again
    functions.DeleteNode(callersRoot);
    functions.DeleteDoc(callers);
    {
        BoundXml another;
        another.DeleteNode(another.OpenXml(folder.Path("a.xml"), false));
    }
    EXPECT_EQ(0, CountingParser::LiveDocuments());
    EXPECT_EQ(0, CountingParser::LiveNodes());
    EXPECT_EQ(0, CountingParser::StrayReleases());
}

TEST(XmlBinding, AnUnboundObjectFailsQuietly) {
    Unbound xml;
    xml.CreateMapSystemCommonSettingTags();
    int node = 0;
    unsigned int err = 7;
    void* document = &node;
    std::string value = "kept";
    CCommonXmlPxdElementData record;
    CCommonXmlPxdElementData* first = &record;
    CCommonPrinterInfo printer;
    CCommonPrinterInfo* head = &printer;
    CCommonXmlPxdDataUnitCost cost;
    CCommonXmlPxdDataPrinterCaps caps;
    CCommonXmlPxdDataUserSettings settings;
    const unsigned char message[] = "<a/>";
    testing::internal::CaptureStdout();
    EXPECT_EQ(nullptr, xml.OpenXml("a.xml", &document));
    EXPECT_EQ(nullptr, xml.SearchElement(&node, 1, &err));
    EXPECT_EQ(nullptr, xml.SearchParentElement(&node, 1, &err));
    EXPECT_EQ(nullptr, xml.GetNextNode(&node, NODE_SELF, &err));
    EXPECT_EQ(nullptr, xml.GetNextNode(&node, "a"));
    EXPECT_EQ(FAILED, xml.GetElementNumber(&node, "cmsystem", &err));
    EXPECT_FALSE(xml.GetElementData(&node, &record, &err));
    EXPECT_FALSE(xml.GetElements(&node, &first, &err));
    EXPECT_FALSE(xml.GetElementValueWithSearch(nullptr, 0, true, nullptr, nullptr));
    EXPECT_FALSE(xml.SetElementBySettingValue(&node, 1, "value"));
    EXPECT_FALSE(xml.GetServiceName(&value));
    EXPECT_FALSE(xml.GetSystemSettingFileFullPath(&value));
    EXPECT_FALSE(xml.GetDetchPipeName(&value));
    EXPECT_FALSE(xml.GetScheduledExportLogFilePath(nullptr));
    EXPECT_FALSE(xml.SetElementBySysComSettingValue(nullptr, 109, 4));
    EXPECT_EQ(FAILED, xml.CreateDBSettingFile("/", "", ""));
    EXPECT_FALSE(xml.GetDBSetting("/", nullptr, nullptr));
    EXPECT_EQ(FAILED, xml.CreatePrinterListFile("a", {}));
    EXPECT_FALSE(xml.GetPrinterList("a", &head));
    EXPECT_EQ(FAILED, xml.CreateUnitCostFile(value, "/", cost));
    EXPECT_FALSE(xml.GetUnitCost(value, "/", cost));
    EXPECT_EQ(FAILED, xml.CreatePrinterCapsFile(value, caps));
    EXPECT_FALSE(xml.GetPrinterCaps(value, caps));
    EXPECT_FALSE(xml.GetUserSetting(settings));
    EXPECT_EQ(FAILED, xml.CreateBNTEndCommand(&value, 1));
    EXPECT_FALSE(xml.ParseBNTCmdRet(value, value, message, 4, &err));
    xml.DeleteNode(&node);
    xml.CloseXml(&node);
    xml.CloseXml();
    std::fflush(stdout);
    EXPECT_EQ("", testing::internal::GetCapturedStdout());
    EXPECT_EQ(7U, err);
    EXPECT_EQ(&node, document);
    EXPECT_EQ("kept", value);
}

// Components that were built apart call through the table of virtual functions.
TEST(XmlBinding, VirtualFunctionsComeInTheirFixedOrder) {
    class Overridden : public CCommonXmlPxd {
    public:
        const char* getBNTCmdBase() const override { return "first"; }
        void* OpenXml(std::string path, bool /*fromResources*/) override {
            return path == "second" ? this : nullptr;
        }
        bool GetSystemSettingFileFullPath(std::string* path) override {
            *path = "third";
            return true;
        }
    };
    Overridden xml;
    CCommonXmlPxd* object = &xml;
    void** table = *reinterpret_cast<void***>(object);
    EXPECT_STREQ("first",
                 reinterpret_cast<const char* (*)(const CCommonXmlPxd*)>(table[0])(object));
    EXPECT_EQ(object, (reinterpret_cast<void* (*)(CCommonXmlPxd*, std::string, bool)>(table[1])(
                          object, "second", true)));
    std::string path;
    EXPECT_TRUE(
        (reinterpret_cast<bool (*)(CCommonXmlPxd*, std::string*)>(table[2])(object, &path)));
    EXPECT_EQ("third", path);
    EXPECT_STREQ("/xmls/BNTCmdBase.xml", CCommonXmlPxd().getBNTCmdBase());
}

}  // namespace
