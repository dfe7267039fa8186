#include "tests/CostCountCommon/DataFileFixture.h"
#include "tests/support/PrinterRecords.h"

namespace {

// The texts that elements were to get, in order, and what sets them.
std::string g_writes;
XmlPxdSetElementValue* g_set;

unsigned int TellAndSet(PNODE element, const char* value, unsigned int kind) {
    g_writes.append(value).append(kind == XMLPXD_MACHINE_TEXT ? "|" : "typed");
    return g_set(element, value, kind);
}

const std::string WRITING = "CCommonXmlPxd::SetElementBySettingValue() ERROR: ";
const std::string LOGGED = "CommonXmlPxd: ";
enum Kind { COMMAND, REQUEST, REPLY, BNT_RESULT, DETCH_RESULT };

class BntCommands : public SettingsFixture {
protected:
    void SetUp() override {
        SettingsFixture::SetUp();
        WriteFile(DataFolder() + "/settings",
                  "<cmsystem><UsbRetryCount>10</UsbRetryCount><UsbRetryInterval>11"
                  "</UsbRetryInterval><CommuRetryCount>12</CommuRetryCount>"
                  "<CommuRetryInterval>13</CommuRetryInterval></cmsystem>");
        g_set = std::exchange(m_xml.m_FunctionsXmlPxd->SetElementValue, TellAndSet);
    }

    // Whether a message was built, what was printed and logged. Even values have a high priority.
    std::string Built(Kind kind, int value, const std::string& text = "t") {
        CCommonPrinterInfo printer = FilledPrinter(text);
        const auto type = static_cast<BNTCOMMAND_TYPE>(value);
        const auto priority = static_cast<BNTCOMMAND_PRIORITY>(value % 2 == 0 ? 1 : value * 2);
        const auto number = static_cast<unsigned int>(value);
        const bool isEven = value % 2 == 0;
        g_writes.clear();
        m_out = "earlier";
        unsigned int size = 0;
        std::string told = Printed([&] {
            size = kind == COMMAND
                       ? m_xml.CreateBNTCommand(&m_out, printer, type, priority, true, ~0U)
                   : kind == REQUEST ? m_xml.CreateBNTRequestCommand(&m_out, type, priority, isEven,
                                                                     number, text.c_str())
                   : kind == REPLY
                       ? m_xml.CreateBNTRetCommand(&m_out, static_cast<BNTCMDRET_TYPE>(value), text)
                       : m_xml.CreateResultCommand(&m_out, printer, number, kind == BNT_RESULT,
                                                   true, isEven);
        });
        for (const std::string& record : Logged()) {
            told.append(record).append("\n");
        }
        EXPECT_EQ(0, CountingParser::LiveDocuments() + CountingParser::LiveNodes());
        EXPECT_EQ(size, m_out == "earlier" ? FAILED : m_out.size());
        return (size == FAILED ? "none " : "built ") + told;
    }
    BoundXml m_xml;
    std::string m_out;
};

TEST_F(BntCommands, TheirElementsAreWrittenInOrder) {
    const struct {
        Kind kind;
        int value;
        std::string root, writes;
    } rows[] = {
        {COMMAND, 0, "bntcmd", "get|high|4294967295|t22|t25|t24|t28|4294967295|-1|10|11|12|13|"},
        {COMMAND, 1, "bntcmd", "end|normal|4294967295|10|11|12|13|"},
        {REQUEST, 2, "bntcmd", "ReqSatrt|high|1|2|||||||10|11|12|13|t|"},
        {REPLY, 2, "bntcmdret", "ngqueue|t|"},
        {BNT_RESULT, 1, "bntresult", "t23|yes|success_new|0|"},
        {DETCH_RESULT, 6, "detchresult", "lock_timeout_incomp|1|"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ("built ", Built(row.kind, row.value));
        EXPECT_EQ(row.writes, g_writes);
        EXPECT_TRUE(
            m_out.starts_with("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<" + row.root + ">\n"));
    }
}

TEST_F(BntCommands, AreNotBuiltWithoutAnElementThatIsNeeded) {
    const std::string refused = WRITING + "SetElementValue(2) errCode = 4711\n";
    const std::string notConverted =
        LOGGED + "ConvertToXmlAndAppDataBin() failed. dataSize[-1] 4711\n";
    const struct {
        Kind kind;
        const char* entry;
        int nth;
        std::string told, writes;  // of messages of the value 0
    } rows[] = {
        {COMMAND, "SetElementValue", 3, "none " + refused, "get|high|4294967295|"},
        // What is said of the printer and the retries is all tried.
        {COMMAND, "SetElementValue", 4, "none " + refused,
         "get|high|4294967295|t22|t25|t24|t28|4294967295|-1|10|11|12|13|"},
        {COMMAND, "GetXMLandAppDataBin", 2, "none ",
         "get|high|4294967295|t22|t25|t24|t28|4294967295|-1|10|11|12|13|"},
        {REPLY, "SetElementValue", 1, "none " + refused, "ok|"},
        {BNT_RESULT, "SetElementValue", 1, "none " + refused, "t23|"},
        {BNT_RESULT, "SetElementValue", 2,
         "built " + refused + LOGGED +
             "SetElementBySettingValue(XMLTAG_ID_BNTRES_IPCHANGED) failed.\n",
         "t23|yes|success_none|1|"},
        {BNT_RESULT, "SetElementValue", 3,
         "none " + refused + LOGGED + "SetElementBySettingValue(XMLTAG_ID_BNTRES_RESULT) failed.\n",
         "t23|yes|success_none|"},
        {BNT_RESULT, "SetElementValue", 4,
         "none " + refused + LOGGED + "SetElementBySettingValue(XMLTAG_ID_BNTRES_LAST) failed.\n",
         "t23|yes|success_none|1|"},
        {BNT_RESULT, "GetXMLandAppDataBin", 1, "none " + notConverted, "t23|yes|success_none|1|"},
        {DETCH_RESULT, "GetXMLandAppDataBin", 2, "none " + notConverted, "success_none|1|"},
    };
    for (const auto& row : rows) {
        CountingParser::Fail(row.entry, row.nth, 4711);
        EXPECT_EQ(row.told, Built(row.kind, 0)) << row.kind << row.entry << row.nth;
        EXPECT_EQ(row.writes, g_writes) << row.kind << row.entry << row.nth;
    }
}

TEST_F(BntCommands, HaveTheKeywordsOfTheirEnumerations) {
    // Their numbers, from that of the value -1 on; 0 where there is none.
    const std::vector<unsigned int> keywords[] = {{0, 1, 2, 0, 0, 0, 0, 0, 21, 0},
                                                  {0, 0, 0, 15, 0, 16, 17, 0, 0, 0},
                                                  {0, 3, 4, 5, 0},
                                                  {8, 6, 7, 8, 9, 22, 23, 24, 8, 8}};
    for (const Kind kind : {COMMAND, REQUEST, REPLY, BNT_RESULT}) {
        int value = -1;
        for (const unsigned int id : keywords[kind]) {
            std::string log;
            if (kind == BNT_RESULT && (value < 0 || value > 6)) {
                log = LOGGED + "in_MessageType is invalid value. in_MessageType[" +
                      std::to_string(static_cast<unsigned int>(value)) + "]\n";
            }
            EXPECT_EQ((id == 0 ? "none " : "built ") + log, Built(kind, value));
            EXPECT_NE(std::string::npos,
                      g_writes.find(id == 0 ? "" : m_xml.m_CommandKeys.at(id) + "|"))
                << value;
            ++value;
        }
    }
    m_xml.m_CommandKeys.clear();
    EXPECT_EQ("none ", Built(COMMAND, 0));
    EXPECT_EQ("none " + LOGGED + "can not find itMessageType in m_CommandKeys.\n",
              Built(DETCH_RESULT, 0));
}

TEST_F(BntCommands, NeedTextsThatXmlHoldsSettingsAndTemplates) {
    for (const std::string& text : {std::string("\x01"), std::string("\xFF"), std::string(1, 0)}) {
        for (const Kind kind : {COMMAND, REPLY, BNT_RESULT}) {
            EXPECT_TRUE(Built(kind, 0, text).starts_with("none " + WRITING)) << kind;
        }
    }
    struct OtherTemplate : BoundXml {
        const char* getBNTCmdBase() const override { return "/xmls/BNTRetBase.xml"; }
    } other;
    const std::string notFound = WRITING + "SearchElement(1) in_CmdTagID=127, errCode=1\n";
    EXPECT_EQ(notFound + notFound, Printed([&] {
                  EXPECT_EQ(FAILED, other.CreateBNTEndCommand(&m_out, 1));
                  EXPECT_EQ(FAILED, other.CreateBNTRequestCommand(&m_out, BNTCOMMAND_REQUEST_END,
                                                                  BNTCOMMAND_HIGH, true, 1, ""));
              }));
    const std::string missing = LOGGED + "GetElementValueSysCommSettingFile() failed.\n";
    std::filesystem::remove(DataFolder() + "/settings");
    EXPECT_EQ("none " + missing + missing + missing + missing, Built(COMMAND, 0));
    EXPECT_EQ("none " + missing, Built(REQUEST, 2));
    const std::string templates = CorePlugin() + "/Contents/Resources/xmls/";
    std::filesystem::remove(CorePlugin());
    std::filesystem::create_directories(templates);
    WriteFile(templates + "BNTRetBase.xml", "<bntcmdret><ret/><param/>");
    for (const Kind kind : {COMMAND, REPLY, DETCH_RESULT}) {
        EXPECT_EQ("none ", Built(kind, 0));
    }
}

}  // namespace
