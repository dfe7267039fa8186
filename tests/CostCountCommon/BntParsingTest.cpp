#include <numeric>

#include "tests/CostCountCommon/DataFileFixture.h"

namespace {

// What a parser reads, in order: number, name, and what the printed lines call it; behind a minus
// it is not printed when it is missing.
constexpr const char* COMMAND_ELEMENTS = R"(
127 massagetype BNTCMD_MESSAGETYPE 128 massagepriority BNTCMD_MESSAGEPRIORITY
130 processid BNTCMD_PROCESSID 129 isreply -BNTCMD_ISREPLY 131 printerid BNTCMD_PRINTERID
132 iftype BNTCMD_IFTYPE 133 address BNTCMD_ADDRESS 134 password BNTCMD_PASSWORD
135 location_id -BNTCMD_LOCATIONID 136 nic_index - 137 usbretry_count BNTCMD_USBRETRYCOUNT
138 usbretry_interval BNTCMD_USBRETRYINTERVAL 139 commuretry_count BNTCMD_COMMURETRYCOUNT
140 commuretry_interval BNTCMD_COMMURETRYINTERVAL 141 event_name -BNTCMD_EVENTNAME)";

struct Kind {
    const char* parser;
    const char* elements;
    std::string read;  // when each element's text is its number
};
const Kind COMMAND = {"ParseBNTCommand", COMMAND_ELEMENTS,
                      "127 128 0 130 131 132 133 134 135 136 137 138 139 140 141 11"};
const Kind REPLY = {"ParseBNTCmdRet", "143 ret BNTACK_RET 144 param BNTACK_PARAM", "143 144 11"};
const Kind RESULT = {"ParseBNTResult",
                     "146 printerid BNTRES_PRINTERID 147 result BNTRES_RESULT 148 last BNTRES_LAST",
                     "146 147 11"};

const std::string SEARCHING = "CCommonXmlPxd::SearchParentElement() ERROR: ";
const std::string LOGGED = "CommonXmlPxd: CCommonXmlPxd::ParseBNTResult() ERROR: ";
const std::string IP_CHANGED = "<ip_changed>YeS</ip_changed>";
const unsigned char EMPTY[] = "<a/>";

std::string Joined(std::initializer_list<std::string> texts) {
    return std::accumulate(texts.begin(), texts.end(), std::string());
}

std::string Message(const Kind& kind) {
    std::istringstream elements(kind.elements);
    std::string message = "<m>";
    for (std::string tag, name, printed; elements >> tag >> name >> printed;) {
        message.append("<" + name + ">").append(tag).append("</" + name + ">");
    }
    return message + (&kind == &RESULT ? IP_CHANGED : "") + "</m>";
}

class BntParsing : public SettingsFixture {
protected:
    // What was printed and logged, what was read, and the error.
    std::string Parsed(const Kind& kind, const unsigned char* data, size_t size,
                       unsigned int* err) {
        CBntCommandValue c;
        std::string a, b;
        bool last = true;
        bool ip = true;
        bool isRead = false;
        std::string told = Printed([&] {
            isRead = &kind == &COMMAND ? m_xml.ParseBNTCommand(c, data, size, err)
                     : &kind == &REPLY ? m_xml.ParseBNTCmdRet(a, b, data, size, err)
                                       : m_xml.ParseBNTResult(a, b, last, data, size, err,
                                                              m_isIpRead ? &ip : nullptr);
        });
        for (const std::string& record : Logged()) {
            told.append(record).append("\n");
        }
        EXPECT_EQ(0, CountingParser::LiveDocuments() + CountingParser::LiveNodes());
        std::ostringstream command;
        command << c.m_MessageType << ' ' << c.m_MessagePriority << ' ' << c.m_IsReply << ' '
                << c.m_ProcessId << ' ' << c.m_PrinterId << ' ' << c.m_IfType << ' ' << c.m_Address
                << ' ' << c.m_Password << ' ' << c.m_LocationId << ' ' << c.m_NicIndex << ' '
                << c.m_UsbRetryCount << ' ' << c.m_UsbRetryInterval << ' ' << c.m_CommuRetryCount
                << ' ' << c.m_CommuRetryInterval << ' ' << c.m_EventName;
        std::string read = &kind == &COMMAND ? command.str() : a + " " + b;
        read.append(last ? " 1" : " 0").append(ip ? "1 " : "0 ");
        EXPECT_TRUE(isRead || read == (&kind == &COMMAND ? "  0      0 0      11 " : "  11 "));
        return told + (isRead ? read : "none ") + std::to_string(m_err);
    }
    std::string Parsed(const Kind& kind, const std::string& message) {
        const auto* data = reinterpret_cast<const unsigned char*>(message.data());
        return Parsed(kind, data, message.size(), &m_err);
    }

    unsigned int m_err = 0;
    bool m_isIpRead = true;
    BoundXml m_xml;
};

TEST_F(BntParsing, EveryElementIsNeeded) {
    for (const Kind* kind : {&COMMAND, &REPLY, &RESULT}) {
        const std::string message = Message(*kind);
        EXPECT_EQ(kind->read + " 0", Parsed(*kind, message));
        const std::string error = std::string("CCommonXmlPxd::") + kind->parser + "() ERROR: ";
        const std::string unopened = error + "ConvertFromXmlAndAppDataBin()\nnone ";
        EXPECT_EQ(unopened + "5", Parsed(*kind, "<a"));
        EXPECT_EQ(unopened + "5", Parsed(*kind, nullptr, 4, &m_err));
        EXPECT_EQ(unopened + "5", Parsed(*kind, EMPTY, 0, &m_err));
        EXPECT_EQ(unopened + "5", Parsed(*kind, EMPTY, 4, nullptr));
        std::istringstream elements(kind->elements);
        unsigned int tag = 0;
        int call = 1;
        for (std::string name, id; elements >> tag >> name >> id; call += 2) {
            const bool isTold = id[0] != '-';
            id.erase(0, isTold ? 0 : 1);
            const std::string missing =
                isTold ? Joined({error, "SearchParentElement(XMLTAG_ID_", id, ")\n"}) : "";
            const std::string unread =
                tag == 136 ? ""
                           : Joined({error, "GetElementData(XMLTAG_ID_", id, ") errcode = 4711\n"});
            EXPECT_EQ(Joined({SEARCHING, "GetNextSibling() errcode=1\n", missing, "none 1"}),
                      Parsed(*kind, Without(message, name)));
            CountingParser::Fail("GetElementText", call, 4711);
            EXPECT_EQ(unread + "none 4711", Parsed(*kind, message));
        }
    }
}

TEST_F(BntParsing, NumbersWordsAndWhatNeedNotBeTold) {
    const struct {
        const Kind& kind;
        std::string part, by, readPart, readBy;
    } rows[] = {
        {COMMAND, ">129", ">1x", " 0 ", " 1 "},
        {COMMAND, ">129", "> 1", " 0 ", " 1 "},
        {COMMAND, ">129", ">yes", "", ""},
        {COMMAND, ">135", ">4294967295", "135", "-1"},
        {COMMAND, ">136", "> -4y", "136", "-4"},
        {RESULT, ">148", ">-1", "", ""},
        {RESULT, ">148", ">x1", " 11", " 01"},
        {RESULT, "YeS", "yes ", " 11", " 10"},
        {RESULT, IP_CHANGED, "", "146 147 11",
         SEARCHING + "GetNextSibling() errcode=1\n" + LOGGED +
             "SearchParentElement(XMLTAG_ID_BNTRES_IPCHANGED) 1\n146 147 10"},
        {REPLY, "<m>", "<m><x>1</x><param/>", "144", ""},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(Replaced(row.kind.read, row.readPart, row.readBy) + " 0",
                  Parsed(row.kind, Replaced(Message(row.kind), row.part, row.by)));
    }
    EXPECT_TRUE(Parsed(REPLY, "<m><x><ret/></x><param/></m>").ends_with("none 1"));
    CountingParser::Fail("GetElementText", 7, 4711);
    EXPECT_EQ(LOGGED + "GetElementData(XMLTAG_ID_BNTRES_IPCHANGED) 4711\n146 147 10 0",
              Parsed(RESULT, Message(RESULT)));
    m_isIpRead = false;
    EXPECT_EQ("146 147 11 0", Parsed(RESULT, Replaced(Message(RESULT), IP_CHANGED, "")));
}

TEST_F(BntParsing, AMessageTakesThePlaceOfTheDocument) {
    m_xml.DeleteNode(m_xml.OpenXml("/xmls/BNTRetBase.xml", true));
    EXPECT_EQ(nullptr, m_xml.ConvertFromXmlAndAppDataBin(EMPTY, 3, &m_err));
    EXPECT_EQ(1, CountingParser::LiveDocuments());
    m_xml.DeleteNode(m_xml.ConvertFromXmlAndAppDataBin(EMPTY, 4, &m_err));
    EXPECT_EQ(1 + m_err, static_cast<unsigned int>(CountingParser::LiveDocuments()));
    Parsed(REPLY, "<a");  // looks for documents
}

}  // namespace
