// Parsing messages from background tools. Its external interface is the parsers of CCommonXmlPxd.
#include <exception>
#include <optional>
#include <utility>

#include "CostCountCommon/CommonXMLPxd.h"
#include "CostCountCommon/src/Log.h"
#include "CostCountCommon/xmlpxd/ChildElements.h"
#include "CostCountCommon/xmlpxd/IndexedTags.h"
#include "CostCountCommon/xmlpxd/NumberOf.h"
#include "CostCountCommon/xmlpxd/Print.h"
#include "CostCountCommon/xmlpxd/XmlNode.h"
#include "compatible/Ascii.h"

namespace {

using xmlpxd::NumberOf;
using xmlpxd::XmlDocument;
using xmlpxd::XmlNode;

constexpr const char* SOURCE = "CommonXmlPxd";

// An element of a message, and the field that takes its text.
template <typename Record>
struct FieldRow {
    unsigned int tag;
    const char* missing;  // printed; null for nothing
    const char* unread;   // the same, with the error code
    void (*take)(Record& record, std::string& text);
};

template <typename Record, std::string Record::*Field>
void Text(Record& record, std::string& text) {
    (record.*Field).swap(text);
}

template <int CBntCommandValue::*Field>
void Number(CBntCommandValue& command, std::string& text) {
    command.*Field = NumberOf(text);
}

using Command = CBntCommandValue;

constexpr FieldRow<Command> COMMAND[] = {
    {XMLTAG_BNTCMD_MASSAGETYPE,
     "CCommonXmlPxd::ParseBNTCommand() ERROR: SearchParentElement(XMLTAG_ID_BNTCMD_MESSAGETYPE)",
     "CCommonXmlPxd::ParseBNTCommand() ERROR: GetElementData(XMLTAG_ID_BNTCMD_MESSAGETYPE) errcode = %u\n",
     Text<Command, &Command::m_MessageType>},
    {XMLTAG_BNTCMD_MASSAGEPRIORITY,
     "CCommonXmlPxd::ParseBNTCommand() ERROR: SearchParentElement(XMLTAG_ID_BNTCMD_MESSAGEPRIORITY)",
     "CCommonXmlPxd::ParseBNTCommand() ERROR: GetElementData(XMLTAG_ID_BNTCMD_MESSAGEPRIORITY) errcode = %u\n",
     Text<Command, &Command::m_MessagePriority>},
    {XMLTAG_BNTCMD_PROCESSID,
     "CCommonXmlPxd::ParseBNTCommand() ERROR: SearchParentElement(XMLTAG_ID_BNTCMD_PROCESSID)",
     "CCommonXmlPxd::ParseBNTCommand() ERROR: GetElementData(XMLTAG_ID_BNTCMD_PROCESSID) errcode = %u\n",
     Text<Command, &Command::m_ProcessId>},
    {XMLTAG_BNTCMD_ISREPLY, nullptr,
     "CCommonXmlPxd::ParseBNTCommand() ERROR: GetElementData(XMLTAG_ID_BNTCMD_ISREPLY) errcode = %u\n",
     [](Command& command, std::string& text) { command.m_IsReply = NumberOf(text) == 1; }},
    {XMLTAG_BNTCMD_PRINTERID,
     "CCommonXmlPxd::ParseBNTCommand() ERROR: SearchParentElement(XMLTAG_ID_BNTCMD_PRINTERID)",
     "CCommonXmlPxd::ParseBNTCommand() ERROR: GetElementData(XMLTAG_ID_BNTCMD_PRINTERID) errcode = %u\n",
     Text<Command, &Command::m_PrinterId>},
    {XMLTAG_BNTCMD_IFTYPE,
     "CCommonXmlPxd::ParseBNTCommand() ERROR: SearchParentElement(XMLTAG_ID_BNTCMD_IFTYPE)",
     "CCommonXmlPxd::ParseBNTCommand() ERROR: GetElementData(XMLTAG_ID_BNTCMD_IFTYPE) errcode = %u\n",
     Text<Command, &Command::m_IfType>},
    {XMLTAG_BNTCMD_ADDRESS,
     "CCommonXmlPxd::ParseBNTCommand() ERROR: SearchParentElement(XMLTAG_ID_BNTCMD_ADDRESS)",
     "CCommonXmlPxd::ParseBNTCommand() ERROR: GetElementData(XMLTAG_ID_BNTCMD_ADDRESS) errcode = %u\n",
     Text<Command, &Command::m_Address>},
    {XMLTAG_BNTCMD_PASSWORD,
     "CCommonXmlPxd::ParseBNTCommand() ERROR: SearchParentElement(XMLTAG_ID_BNTCMD_PASSWORD)",
     "CCommonXmlPxd::ParseBNTCommand() ERROR: GetElementData(XMLTAG_ID_BNTCMD_PASSWORD) errcode = %u\n",
     Text<Command, &Command::m_Password>},
    {XMLTAG_BNTCMD_LOCATION_ID, nullptr,
     "CCommonXmlPxd::ParseBNTCommand() ERROR: GetElementData(XMLTAG_ID_BNTCMD_LOCATIONID) errcode = %u\n",
     Number<&Command::m_LocationId>},
    {XMLTAG_BNTCMD_NIC_INDEX, nullptr, nullptr, Number<&Command::m_NicIndex>},
    {XMLTAG_BNTCMD_USBRETRY_COUNT,
     "CCommonXmlPxd::ParseBNTCommand() ERROR: SearchParentElement(XMLTAG_ID_BNTCMD_USBRETRYCOUNT)",
     "CCommonXmlPxd::ParseBNTCommand() ERROR: GetElementData(XMLTAG_ID_BNTCMD_USBRETRYCOUNT) errcode = %u\n",
     Text<Command, &Command::m_UsbRetryCount>},
    {XMLTAG_BNTCMD_USBRETRY_INTERVAL,
     "CCommonXmlPxd::ParseBNTCommand() ERROR: SearchParentElement(XMLTAG_ID_BNTCMD_USBRETRYINTERVAL)",
     "CCommonXmlPxd::ParseBNTCommand() ERROR: GetElementData(XMLTAG_ID_BNTCMD_USBRETRYINTERVAL) errcode = %u\n",
     Text<Command, &Command::m_UsbRetryInterval>},
    {XMLTAG_BNTCMD_COMMURETRY_COUNT,
     "CCommonXmlPxd::ParseBNTCommand() ERROR: SearchParentElement(XMLTAG_ID_BNTCMD_COMMURETRYCOUNT)",
     "CCommonXmlPxd::ParseBNTCommand() ERROR: GetElementData(XMLTAG_ID_BNTCMD_COMMURETRYCOUNT) errcode = %u\n",
     Text<Command, &Command::m_CommuRetryCount>},
    {XMLTAG_BNTCMD_COMMURETRY_INTERVAL,
     "CCommonXmlPxd::ParseBNTCommand() ERROR: SearchParentElement(XMLTAG_ID_BNTCMD_COMMURETRYINTERVAL)",
     "CCommonXmlPxd::ParseBNTCommand() ERROR: GetElementData(XMLTAG_ID_BNTCMD_COMMURETRYINTERVAL) errcode = %u\n",
     Text<Command, &Command::m_CommuRetryInterval>},
    {XMLTAG_BNTCMD_EVENT_NAME, nullptr,
     "CCommonXmlPxd::ParseBNTCommand() ERROR: GetElementData(XMLTAG_ID_BNTCMD_EVENTNAME) errcode = %u\n",
     Text<Command, &Command::m_EventName>},
};

struct Reply {
    std::string ret;
    std::string param;
};

constexpr FieldRow<Reply> REPLY[] = {
    {XMLTAG_CMDRET_RET,
     "CCommonXmlPxd::ParseBNTCmdRet() ERROR: SearchParentElement(XMLTAG_ID_BNTACK_RET)",
     "CCommonXmlPxd::ParseBNTCmdRet() ERROR: GetElementData(XMLTAG_ID_BNTACK_RET) errcode = %u\n",
     Text<Reply, &Reply::ret>},
    {XMLTAG_CMDRET_PARAM,
     "CCommonXmlPxd::ParseBNTCmdRet() ERROR: SearchParentElement(XMLTAG_ID_BNTACK_PARAM)",
     "CCommonXmlPxd::ParseBNTCmdRet() ERROR: GetElementData(XMLTAG_ID_BNTACK_PARAM) errcode = %u\n",
     Text<Reply, &Reply::param>},
};

struct Result {
    std::string printerId;
    std::string result;
    bool last = false;
};

constexpr FieldRow<Result> RESULT[] = {
    {XMLTAG_RESULT_PRINTERID,
     "CCommonXmlPxd::ParseBNTResult() ERROR: SearchParentElement(XMLTAG_ID_BNTRES_PRINTERID)",
     "CCommonXmlPxd::ParseBNTResult() ERROR: GetElementData(XMLTAG_ID_BNTRES_PRINTERID) errcode = %u\n",
     Text<Result, &Result::printerId>},
    {XMLTAG_RESULT_RESULT,
     "CCommonXmlPxd::ParseBNTResult() ERROR: SearchParentElement(XMLTAG_ID_BNTRES_RESULT)",
     "CCommonXmlPxd::ParseBNTResult() ERROR: GetElementData(XMLTAG_ID_BNTRES_RESULT) errcode = %u\n",
     Text<Result, &Result::result>},
    {XMLTAG_RESULT_LAST,
     "CCommonXmlPxd::ParseBNTResult() ERROR: SearchParentElement(XMLTAG_ID_BNTRES_LAST)",
     "CCommonXmlPxd::ParseBNTResult() ERROR: GetElementData(XMLTAG_ID_BNTRES_LAST) errcode = %u\n",
     [](Result& result, std::string& text) { result.last = NumberOf(text) != 0; }},
};

enum class TextRead { DONE, MISSING, UNREAD };

}  // namespace

namespace xmlpxd {

// A message that is open for the time of a scope. The object ends without a document.
class MessageParser {
public:
    MessageParser(CCommonXmlPxd& xml, const unsigned char* data, unsigned long size,
                  unsigned int* err)
        : m_xml(xml), m_err(err), m_root(xml.ConvertFromXmlAndAppDataBin(data, size, err)) {
        if (m_root != nullptr) {
            m_children.emplace(*xml.m_FunctionsXmlPxd, m_root);
        }
    }
    ~MessageParser() {
        m_children.reset();
        m_xml.DeleteNode(m_root);
        m_xml.CloseXml();
    }
    MessageParser(const MessageParser&) = delete;
    MessageParser& operator=(const MessageParser&) = delete;

    // Prints the text when not, unless the object is unbound.
    bool IsOpen(const char* notOpened) const {
        if (m_root == nullptr && m_xml.m_FunctionsXmlPxd != nullptr) {
            Print("%s", notOpened);
        }
        return m_root != nullptr;
    }

    TextRead Read(unsigned int tag, std::string* text) try {
        const std::string* name = m_xml.ChildName(tag, m_err);
        PNODE element = name == nullptr ? nullptr : m_children->Find(*name, m_err);
        if (element == nullptr) {
            return TextRead::MISSING;
        }
        CCommonXmlPxdElementData data;
        if (!m_xml.ReadElement(element, &data, m_err)) {
            return TextRead::UNREAD;
        }
        text->swap(data.m_Values.front());
        return TextRead::DONE;
    } catch (const std::exception&) {
        *m_err = XMLPXD_OUT_OF_MEMORY;
        return TextRead::UNREAD;
    }

    // Up to the first that fails.
    template <typename Record, size_t N>
    bool Read(const FieldRow<Record> (&rows)[N], Record& record) {
        const IndexedTags indexed(m_xml);
        for (const FieldRow<Record>& row : rows) {
            std::string text;
            const TextRead result = Read(row.tag, &text);
            if (result != TextRead::DONE) {
                const char* message = result == TextRead::MISSING ? row.missing : row.unread;
                if (message != nullptr) {
                    Print(message, *m_err);
                }
                return false;
            }
            row.take(record, text);
        }
        return true;
    }

    // A message without this element is complete; what is wrong is only logged. To be called after
    // the rows were read, which brings the index of names up to date.
    bool ReadIpChanged() {
        std::string text;
        const TextRead result = Read(XMLTAG_RESULT_IP_CHANGED, &text);
        if (result != TextRead::DONE) {
            LibLogger().WriteLog(
                SOURCE, __LINE__, 'e', *m_err, "%s",
                result == TextRead::MISSING
                    ? "CCommonXmlPxd::ParseBNTResult() ERROR: SearchParentElement(XMLTAG_ID_BNTRES_IPCHANGED)"
                    : "CCommonXmlPxd::ParseBNTResult() ERROR: GetElementData(XMLTAG_ID_BNTRES_IPCHANGED)");
            *m_err = XMLPXD_OK;
        }
        return IsEqualAsciiNoCase(text, "yes");
    }

private:
    CCommonXmlPxd& m_xml;
    unsigned int* m_err;
    void* m_root;
    std::optional<ChildElements> m_children;
};

}  // namespace xmlpxd

using xmlpxd::MessageParser;

void* CCommonXmlPxd::ConvertFromXmlAndAppDataBin(const unsigned char* data, unsigned long size,
                                                 unsigned int* err) {
    if (m_FunctionsXmlPxd == nullptr || data == nullptr || size == 0 || err == nullptr) {
        return nullptr;
    }
    const XMLPXD_FUNCLIST& functions = *m_FunctionsXmlPxd;
    *err = XMLPXD_OK;
    if (functions.CreateDocByBin == nullptr) {
        *err = XMLPXD_INVALID_ARGUMENT;
        return nullptr;
    }
    XmlDocument document(functions, functions.CreateDocByBin(data, size, 0, err));
    if (!document || *err != XMLPXD_OK) {
        return nullptr;
    }
    XmlNode root =
        xmlpxd::NodeFrom(functions, &XMLPXD_FUNCLIST::GetDocumentElement, document.Get(), err);
    if (!root) {
        return nullptr;
    }
    CloseXml();
    m_document = document.Release();
    m_root = root.Get();
    return root.Release();
}

bool CCommonXmlPxd::ParseBNTCommand(CBntCommandValue& value, const unsigned char* data,
                                    unsigned long size, unsigned int* err) try {
    MessageParser message(*this, data, size, err);
    Command command;
    if (!message.IsOpen("CCommonXmlPxd::ParseBNTCommand() ERROR: ConvertFromXmlAndAppDataBin()") ||
        !message.Read(COMMAND, command)) {
        return false;
    }
    value = std::move(command);
    return true;
} catch (const std::exception&) {
    *err = XMLPXD_OUT_OF_MEMORY;
    return false;
}

bool CCommonXmlPxd::ParseBNTCmdRet(std::string& ret, std::string& param, const unsigned char* data,
                                   unsigned long size, unsigned int* err) try {
    MessageParser message(*this, data, size, err);
    Reply reply;
    if (!message.IsOpen("CCommonXmlPxd::ParseBNTCmdRet() ERROR: ConvertFromXmlAndAppDataBin()") ||
        !message.Read(REPLY, reply)) {
        return false;
    }
    ret.swap(reply.ret);
    param.swap(reply.param);
    return true;
} catch (const std::exception&) {
    *err = XMLPXD_OUT_OF_MEMORY;
    return false;
}

bool CCommonXmlPxd::ParseBNTResult(std::string& printerId, std::string& result, bool& last,
                                   const unsigned char* data, unsigned long size, unsigned int* err,
                                   bool* ipChanged) try {
    MessageParser message(*this, data, size, err);
    Result read;
    if (!message.IsOpen("CCommonXmlPxd::ParseBNTResult() ERROR: ConvertFromXmlAndAppDataBin()") ||
        !message.Read(RESULT, read)) {
        return false;
    }
    if (ipChanged != nullptr) {
        *ipChanged = message.ReadIpChanged();
    }
    printerId.swap(read.printerId);
    result.swap(read.result);
    last = read.last;
    return true;
} catch (const std::exception&) {
    *err = XMLPXD_OUT_OF_MEMORY;
    return false;
}
