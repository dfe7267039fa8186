// Building messages to and from the background tools. Its external interface is the builders of
// CCommonXmlPxd.
#include <algorithm>
#include <exception>
#include <iterator>
#include <memory>
#include <new>
#include <string>
#include <utility>

#include "CostCountCommon/CommonXMLPxd.h"
#include "CostCountCommon/src/Log.h"
#include "CostCountCommon/xmlpxd/IndexedTags.h"
#include "CostCountCommon/xmlpxd/OpenedXml.h"
#include "CostCountCommon/xmlpxd/PrinterTexts.h"
#include "CostCountCommon/xmlpxd/Steps.h"
#include "CostCountCommon/xmlpxd/SystemSettings.h"

namespace {

using xmlpxd::CurrentXml;
using xmlpxd::FAILED;
using xmlpxd::PrinterDecimal;
using xmlpxd::PrinterText;
using xmlpxd::SystemSettingFiles;
using xmlpxd::XmlSource;

constexpr const char* SOURCE = "CommonXmlPxd";

constexpr const char* REPLY_TEMPLATE = "/xmls/BNTRetBase.xml";
constexpr const char* BNT_RESULT_TEMPLATE = "/xmls/BNTResultBase.xml";
constexpr const char* DETCH_RESULT_TEMPLATE = "/xmls/DetchResultBase.xml";

constexpr int NO_BLOCK = -1;

// The keyword of a value of an enumeration.
struct KeywordRow {
    unsigned int value;
    unsigned int key;
};

constexpr unsigned int NO_KEY = 0;

constexpr KeywordRow COMMANDS[] = {
    {BNTCOMMAND_GET, COMMANDKEY_GET},
    {BNTCOMMAND_END, COMMANDKEY_END},
    {BNTCOMMAND_SCHEDULED_EXPORT, COMMANDKEY_SCHEDULEDEXPORT},
};

constexpr KeywordRow REQUESTS[] = {
    {BNTCOMMAND_REQUEST_START, COMMANDKEY_REQSATRT},
    {BNTCOMMAND_REQUEST_END, COMMANDKEY_REQEND},
    {BNTCOMMAND_REQUEST_RESULT, COMMANDKEY_REQRESULT},
};

constexpr KeywordRow REPLIES[] = {
    {BNTCMDRET_OK, COMMANDKEY_OK},
    {BNTCMDRET_NGCMD, COMMANDKEY_NGCMD},
    {BNTCMDRET_NGQUEUE, COMMANDKEY_NGQUEUE},
};

constexpr KeywordRow RESULTS[] = {
    {BNTRESULT_SUCCESS_NONE, COMMANDKEY_SUCCESS_NONE},
    {BNTRESULT_SUCCESS_NEW, COMMANDKEY_SUCCESS_NEW},
    {BNTRESULT_FAILURE, COMMANDKEY_FAILURE},
    {BNTRESULT_UNEXECUTE, COMMANDKEY_UNEXECUTE},
    {BNTRESULT_FAILURE_INCOMP, COMMANDKEY_FAILURE_INCOMP},
    {BNTRESULT_LOCK_TIMEOUT, COMMANDKEY_LOCK_TIMEOUT},
    {BNTRESULT_LOCK_TIMEOUT_INCOMP, COMMANDKEY_LOCK_TIMEOUT_INCOMP},
};

template <size_t N, typename Value>
unsigned int KeyOf(const KeywordRow (&rows)[N], Value value) {
    const auto* const row =
        std::find_if(std::begin(rows), std::end(rows), [value](const KeywordRow& candidate) {
            return candidate.value == static_cast<unsigned int>(value);
        });
    return row == std::end(rows) ? NO_KEY : row->key;
}

unsigned int KeyOf(BNTCOMMAND_PRIORITY priority) {
    return priority == BNTCOMMAND_HIGH ? COMMANDKEY_HIGH : COMMANDKEY_NORMAL;
}

const char* DigitOf(bool value) {
    return value ? "1" : "0";
}

// What a command says of a printer.
struct PrinterRow {
    unsigned int tag;
    std::string (*text)(const CCommonPrinterInfo& printer);
};

constexpr PrinterRow PRINTER[] = {
    {XMLTAG_BNTCMD_PRINTERID, PrinterText<&CCommonPrinterInfo::GetSerialNumber>},
    {XMLTAG_BNTCMD_IFTYPE, PrinterText<&CCommonPrinterInfo::GetPortType>},
    {XMLTAG_BNTCMD_ADDRESS, PrinterText<&CCommonPrinterInfo::GetPortNumber>},
    {XMLTAG_BNTCMD_PASSWORD, PrinterText<&CCommonPrinterInfo::GetAuthInfo>},
    {XMLTAG_BNTCMD_LOCATION_ID, PrinterDecimal<&CCommonPrinterInfo::GetLocationId>},
    {XMLTAG_BNTCMD_NIC_INDEX, PrinterDecimal<&CCommonPrinterInfo::GetNicIndex>},
};

// The system's settings that a command tells the tool.
struct RetryRow {
    unsigned int tag;
    unsigned int setting;
};

constexpr RetryRow RETRIES[] = {
    {XMLTAG_BNTCMD_USBRETRY_COUNT, XMLTAG_SYS_USBRETRYCOUNT},
    {XMLTAG_BNTCMD_USBRETRY_INTERVAL, XMLTAG_SYS_USBRETRYINTERVAL},
    {XMLTAG_BNTCMD_COMMURETRY_COUNT, XMLTAG_SYS_COMMURETRYCOUNT},
    {XMLTAG_BNTCMD_COMMURETRY_INTERVAL, XMLTAG_SYS_COMMURETRYINTERVAL},
};

// Up to the first that fails.
template <typename Row, size_t N, typename Write>
bool WriteRows(const Row (&rows)[N], Write write) {
    return std::all_of(std::begin(rows), std::end(rows), write);
}

// All, whatever becomes of the others. True when all were written.
template <typename Row, size_t N, typename Write>
bool WriteEachRow(const Row (&rows)[N], Write write) {
    return std::count_if(std::begin(rows), std::end(rows), write) == N;
}

// All are copied as SetElementBySysComSettingValue does it, from files that are opened once.
auto RetryWriter(SystemSettingFiles& settings, void* root) {
    return [&settings, root](const RetryRow& row) {
        return settings.Copy(root, row.tag, row.setting);
    };
}

// Opens a template, has it filled by fill(root) and converts it. The object ends without a
// document.
template <typename Fill, typename NotConverted>
unsigned int Build(CCommonXmlPxd& xml, const char* base, std::string* out, Fill fill,
                   NotConverted notConverted) try {
    xml.CloseXml();  // an earlier document goes, whatever comes
    const CurrentXml message(xml, base == nullptr ? "" : base, XmlSource::TEMPLATE);
    const xmlpxd::IndexedTags indexed(xml);
    if (message.Root() == nullptr || !fill(message.Root())) {
        return FAILED;
    }
    unsigned int err = XMLPXD_OK;
    const int size = xml.ConvertToXmlAndAppDataBin(out, &err);
    if (size <= 0 || err != XMLPXD_OK) {
        notConverted(size, err);
        return FAILED;
    }
    return static_cast<unsigned int>(size);
} catch (const std::exception&) {
    return FAILED;  // out of memory
}

// For builders that deliberately say nothing of it.
template <typename Fill>
unsigned int Build(CCommonXmlPxd& xml, const char* base, std::string* out, Fill fill) {
    return Build(xml, base, out, fill, [](int, unsigned int) {});
}

}  // namespace

const std::string* CCommonXmlPxd::Keyword(unsigned int key) const {
    const auto found = m_CommandKeys.find(key);
    return key == NO_KEY || found == m_CommandKeys.end() ? nullptr : &found->second;
}

bool CCommonXmlPxd::SetKeyword(void* start, unsigned int tagId, unsigned int key) {
    const std::string* keyword = Keyword(key);
    return keyword != nullptr && SetElementBySettingValue(start, tagId, *keyword);
}

int CCommonXmlPxd::ConvertToXmlAndAppDataBin(std::string* out, unsigned int* err) try {
    if (m_FunctionsXmlPxd == nullptr || out == nullptr || err == nullptr) {
        return NO_BLOCK;
    }
    auto* const convert = m_FunctionsXmlPxd->GetXMLandAppDataBin;
    if (convert == nullptr || m_document == nullptr) {
        *err = XMLPXD_INVALID_ARGUMENT;
        return NO_BLOCK;
    }
    const int size = convert(m_document, nullptr, 0, err);
    if (size <= 0 || *err != XMLPXD_OK) {
        return NO_BLOCK;
    }
    const auto count = static_cast<unsigned long>(size);
    const std::unique_ptr<unsigned char[]> block(new (std::nothrow) unsigned char[count + 1]());
    if (block == nullptr) {
        LibLogger().WriteLog(SOURCE, __LINE__, 'e', 0, "new unsigned char[%lu] failed.", count + 1);
        *err = XMLPXD_OUT_OF_MEMORY;
        return NO_BLOCK;
    }
    convert(m_document, block.get(), count, err);
    if (*err != XMLPXD_OK) {
        return NO_BLOCK;
    }
    out->assign(reinterpret_cast<const char*>(block.get()));
    return size;
} catch (const std::exception&) {
    *err = XMLPXD_OUT_OF_MEMORY;
    return NO_BLOCK;
}

unsigned int CCommonXmlPxd::CreateBNTCommand(std::string* out, CCommonPrinterInfo& printer,
                                             BNTCOMMAND_TYPE type, BNTCOMMAND_PRIORITY priority,
                                             bool /*isReply*/, unsigned int processId) {
    return Build(*this, getBNTCmdBase(), out, [&](void* root) {
        if (!SetKeyword(root, XMLTAG_BNTCMD_MASSAGETYPE, KeyOf(COMMANDS, type)) ||
            !SetKeyword(root, XMLTAG_BNTCMD_MASSAGEPRIORITY, KeyOf(priority)) ||
            !SetElementBySettingValue(root, XMLTAG_BNTCMD_PROCESSID, std::to_string(processId))) {
            return false;
        }
        const bool isPrinterWritten =
            type == BNTCOMMAND_END || WriteEachRow(PRINTER, [&](const PrinterRow& row) {
                return SetElementBySettingValue(root, row.tag, row.text(printer));
            });
        SystemSettingFiles settings(*this);
        const bool areRetriesWritten = WriteEachRow(RETRIES, RetryWriter(settings, root));
        return isPrinterWritten && areRetriesWritten;
    });
}

unsigned int CCommonXmlPxd::CreateBNTGetCommand(std::string* out, BNTCOMMAND_PRIORITY priority,
                                                CCommonPrinterInfo& printer,
                                                unsigned int processId) {
    return CreateBNTCommand(out, printer, BNTCOMMAND_GET, priority, false, processId);
}

unsigned int CCommonXmlPxd::CreateBNTScheduledExportCommand(std::string* out,
                                                            BNTCOMMAND_PRIORITY priority,
                                                            CCommonPrinterInfo& printer,
                                                            unsigned int processId) {
    return CreateBNTCommand(out, printer, BNTCOMMAND_SCHEDULED_EXPORT, priority, false, processId);
}

unsigned int CCommonXmlPxd::CreateBNTEndCommand(std::string* out, unsigned int processId) {
    CCommonPrinterInfo empty;
    return CreateBNTCommand(out, empty, BNTCOMMAND_END, BNTCOMMAND_NORMAL, false, processId);
}

unsigned int CCommonXmlPxd::CreateBNTRequestCommand(std::string* out, BNTCOMMAND_TYPE type,
                                                    BNTCOMMAND_PRIORITY priority, bool isReply,
                                                    unsigned int processId, const char* eventName) {
    return Build(*this, getBNTCmdBase(), out, [&](void* root) {
        SystemSettingFiles settings(*this);
        return SetKeyword(root, XMLTAG_BNTCMD_MASSAGETYPE, KeyOf(REQUESTS, type)) &&
               SetKeyword(root, XMLTAG_BNTCMD_MASSAGEPRIORITY, KeyOf(priority)) &&
               SetElementBySettingValue(root, XMLTAG_BNTCMD_ISREPLY, DigitOf(isReply)) &&
               SetElementBySettingValue(root, XMLTAG_BNTCMD_PROCESSID, std::to_string(processId)) &&
               WriteRows(PRINTER,
                         [&](const PrinterRow& row) {
                             return SetElementBySettingValue(root, row.tag, "");
                         }) &&
               WriteRows(RETRIES, RetryWriter(settings, root)) &&
               SetElementBySettingValue(root, XMLTAG_BNTCMD_EVENT_NAME,
                                        eventName == nullptr ? "" : eventName);
    });
}

// By value, as the interfaces of the class take texts.
// NOLINTNEXTLINE(performance-unnecessary-value-param)
unsigned int CCommonXmlPxd::CreateBNTRetCommand(std::string* out, BNTCMDRET_TYPE ret,
                                                std::string param) {
    return Build(*this, REPLY_TEMPLATE, out, [&](void* root) {
        return SetKeyword(root, XMLTAG_CMDRET_RET, KeyOf(REPLIES, ret)) &&
               SetElementBySettingValue(root, XMLTAG_CMDRET_PARAM, std::move(param));
    });
}

unsigned int CCommonXmlPxd::CreateResultCommand(std::string* out, const CCommonPrinterInfo& printer,
                                                unsigned int resultType, bool isBnt, bool ipChanged,
                                                bool last) {
    const auto log = [](unsigned int line, const char* message) {
        LibLogger().WriteLog(SOURCE, line, 'e', 0, "%s", message);
        return false;
    };
    const auto fill = [&](void* root) {
        // False also without memory, which is logged as any other failure is.
        const auto set = [&](unsigned int tagId, const std::string& text) {
            try {
                return SetElementBySettingValue(root, tagId, text);
            } catch (const std::exception&) {
                return false;
            }
        };
        if (isBnt) {
            if (!set(XMLTAG_RESULT_PRINTERID,
                     PrinterText<&CCommonPrinterInfo::GetMacAddress>(printer))) {
                return false;
            }
            // Receivers do without this element.
            if (!set(XMLTAG_RESULT_IP_CHANGED, ipChanged ? "yes" : "no")) {
                log(__LINE__, "SetElementBySettingValue(XMLTAG_ID_BNTRES_IPCHANGED) failed.");
            }
        }
        unsigned int key = KeyOf(RESULTS, resultType);
        if (key == NO_KEY) {
            LibLogger().WriteLog(SOURCE, __LINE__, 'e', 0,
                                 "in_MessageType is invalid value. in_MessageType[%u]", resultType);
            key = COMMANDKEY_FAILURE;
        }
        const std::string* keyword = Keyword(key);
        if (keyword == nullptr) {
            return log(__LINE__, "can not find itMessageType in m_CommandKeys.");
        }
        // Both results call their element so.
        if (!set(XMLTAG_RESULT_RESULT, *keyword)) {
            return log(__LINE__, "SetElementBySettingValue(XMLTAG_ID_BNTRES_RESULT) failed.");
        }
        return set(XMLTAG_RESULT_LAST, DigitOf(last)) ||
               log(__LINE__, "SetElementBySettingValue(XMLTAG_ID_BNTRES_LAST) failed.");
    };
    return Build(*this, isBnt ? BNT_RESULT_TEMPLATE : DETCH_RESULT_TEMPLATE, out, fill,
                 [](int size, unsigned int err) {
                     LibLogger().WriteLog(SOURCE, __LINE__, 'e', err,
                                          "ConvertToXmlAndAppDataBin() failed. dataSize[%d]", size);
                 });
}
