// The operations of CCommonXmlPxd, and those of CCommonUtility that make one.
#include <filesystem>

#include "CostCountCommon/CommonUtility.h"
#include "compatible/osFree.h"
#include "tests/faults/Operation.h"

namespace {

using enum Promise;
using Xml = CCommonXmlPxd;

constexpr unsigned int FAILED = 0xFFFFFFFF;
constexpr const char* USER = GROUP_FOLDER "/CMSystemSetting.cfg";
constexpr const char* GROUP_DB = GROUP_FOLDER "/db_settings";
constexpr const char* DB = "target/db_settings";
constexpr const char* PRINTERS = "target/printers";
constexpr const char* COSTS = "target/file";
constexpr const char* CAPS = LOCAL_FOLDER "/PrinterCaps/file";
constexpr unsigned int READS = PARSER | MEMORY;
constexpr unsigned int WRITES = PARSER | MEMORY | SYSTEM | PLACE | KILL;

template <bool (Xml::*GET)(std::string*)>
bool Get(Bench& b) {
    return ((*b.xml).*GET)(&b.out);
}

bool GetRetryData(Bench& b) {
    int values[9];
    auto& [a, c, d, e, f, g, h, i, j] = values;
    return b.xml->GetRetryData(&a, &c, &d, &e, &f, &g, &h, &i, &j);
}

bool WriteDb(Bench& b) {
    return b.xml->CreateDBSettingFile("target", b.Written().text, "0") == 0;
}
bool WriteGroupDb(Bench& b) {
    return b.xml->CreateDBSettingFile(GROUP_FOLDER, "path", "0") == 0;
}
bool RemoveDb(Bench&) {
    return std::filesystem::remove(DB);
}
// The second variant takes the path out again, by a file that appears whole.
bool InitializeDb(Bench& b) {
    return b.variant == 0 ? CCommonUtility::initializeDBPath("target")
                          : CopyFile(CCommonUtility::GetDefaultDBSettingsFilePath().c_str(), DB, 0);
}
bool WritePrinters(Bench& b) {
    return b.xml->CreatePrinterListFile(PRINTERS, b.Written().printers) != FAILED;
}
bool WriteCosts(Bench& b) {
    return b.xml->CreateUnitCostFile(b.name, "target/", b.Written().costs) == 0;
}
bool WriteCaps(Bench& b) {
    return b.xml->CreatePrinterCapsFile(b.name, b.Written().caps) == 0;
}

bool StepToPrinter(Bench& b) {
    void* document = nullptr;
    void* root = b.xml->OpenXml(PRINTERS, &document);
    CCommonXmlPxdElementData* elements = nullptr;
    void* printer = b.xml->GetPrinterElements(root, true, &elements, &b.err);
    b.xml->releaseElementData(elements);
    b.xml->DeleteNode(printer);
    b.xml->DeleteNode(root);
    b.xml->CloseXml(document);
    return printer != nullptr;
}

bool BuildRequest(Bench& b) {
    return b.xml->CreateBNTRequestCommand(&b.out, BNTCOMMAND_REQUEST_START, BNTCOMMAND_HIGH, true,
                                          1, "event") != FAILED;
}
// That the address changed is told by a word that a message may lack, and so the failure of that
// word alone would change the message.
template <bool IS_BNT>
bool BuildResult(Bench& b) {
    return b.xml->CreateResultCommand(&b.out, b.Printer(), BNTRESULT_SUCCESS_NEW, IS_BNT, false,
                                      true) != FAILED;
}
const unsigned char* BytesOf(const std::string& message) {
    return reinterpret_cast<const unsigned char*>(message.data());
}
bool ParseResult(Bench& b) {
    bool last = false;
    bool ipChanged = false;
    return b.xml->ParseBNTResult(b.out, b.second, last, BytesOf(b.result), b.result.size(), &b.err,
                                 &ipChanged);
}

const Operation OPERATIONS[] = {
    {"GetElementValueSysCommSettingFile",
     [](Bench& b) { return b.xml->GetElementValueSysCommSettingFile(XMLTAG_SYS_MAXDETCH, &b.out); },
     READS, USER},
    {"GetServiceName", Get<&Xml::GetServiceName>, READS, USER},
    {"GetBaseTick", Get<&Xml::GetBaseTick>, READS, USER},
    {"GetErrLogLevel", Get<&Xml::GetErrLogLevel>, READS, USER},
    {"GetPrinterListFilePath", Get<&Xml::GetPrinterListFilePath>, READS, USER},
    {"GetDBSettingFilePath", Get<&Xml::GetDBSettingFilePath>, READS, USER},
    {"GetErrLogFilePath", Get<&Xml::GetErrLogFilePath>, READS, USER},
    {"GetScheduledExportSettingFilePath", Get<&Xml::GetScheduledExportSettingFilePath>, READS,
     USER},
    {"GetScheduledExportLogFilePath", Get<&Xml::GetScheduledExportLogFilePath>, READS, USER},
    {"GetBNTPipeName", [](Bench& b) { return b.xml->GetBNTPipeName(&b.out, &b.second, true); },
     READS, USER},
    {"GetDetchPipeName", Get<&Xml::GetDetchPipeName>, MEMORY},
    {"GetRetryData", GetRetryData, READS, USER, nullptr, PARTIAL},
    {"SetElementBySysComSettingValue",
     [](Bench& b) {
         return b.xml->SetElementBySysComSettingValue(b.root, XMLTAG_DB_JOBLOGDB_PATH,
                                                      XMLTAG_SYS_ACTIONLOGPATH);
     },
     READS, USER},

    {"CreateDBSettingFile", WriteDb, WRITES, DB},
    {"GetDBSetting", [](Bench& b) { return b.xml->GetDBSetting("target", &b.out, &b.second); },
     READS, DB, WriteDb},
    {"GetElementValueDBSettingFile",
     [](Bench& b) { return b.xml->GetElementValueDBSettingFile(XMLTAG_DB_JOBLOGDB_PATH, &b.out); },
     READS, GROUP_DB, WriteGroupDb},
    {"SetElementByDBSettingValue",
     [](Bench& b) {
         return b.xml->SetElementByDBSettingValue(b.root, XMLTAG_DB_JOBLOGDB_PATH,
                                                  XMLTAG_DB_JOBLOGDB_PATH);
     },
     READS, GROUP_DB, WriteGroupDb},
    {"CCommonUtility::CreateDBSettingFile",
     [](Bench& b) {
         return CCommonUtility::CreateDBSettingFile("target", b.Written().text, "0") == 0;
     },
     READS, DB},
    {"CCommonUtility::GetDBSetting",
     [](Bench& b) { return CCommonUtility::GetDBSetting("target", &b.out, &b.second); }, READS, DB,
     WriteDb},
    {"CheckDBSettingFile", [](Bench&) { return CCommonUtility::CheckDBSettingFile("target"); },
     READS | SYSTEM | PLACE, DB, RemoveDb, KEPT},
    {"initializeDBPath", InitializeDb, WRITES, DB},

    {"CreatePrinterListFile", WritePrinters, WRITES, PRINTERS},
    {"GetPrinterList", [](Bench& b) { return b.xml->GetPrinterList(PRINTERS, &b.printers); }, READS,
     PRINTERS, WritePrinters},
    {"GetPrinterElements", StepToPrinter, READS, PRINTERS, WritePrinters, PARTIAL},
    {"CreateUnitCostFile", WriteCosts, WRITES, COSTS},
    {"GetUnitCost", [](Bench& b) { return b.xml->GetUnitCost(b.name, "target/", b.costs); }, READS,
     COSTS, WriteCosts, PARTIAL},
    // Deliberately tells of a failed save only.
    {"CreatePrinterCapsFile", WriteCaps, WRITES, CAPS, nullptr, SAVED},
    {"GetPrinterCaps", [](Bench& b) { return b.xml->GetPrinterCaps(b.name, b.caps); }, READS, CAPS,
     WriteCaps, PARTIAL},
    {"GetUserSetting", [](Bench& b) { return b.xml->GetUserSetting(b.settings); }, READS, nullptr,
     nullptr, PARTIAL},

    {"CreateBNTGetCommand",
     [](Bench& b) {
         return b.xml->CreateBNTGetCommand(&b.out, BNTCOMMAND_HIGH, b.Printer(), 1) != FAILED;
     },
     READS},
    {"CreateBNTScheduledExportCommand",
     [](Bench& b) {
         return b.xml->CreateBNTScheduledExportCommand(&b.out, BNTCOMMAND_HIGH, b.Printer(), 1) !=
                FAILED;
     },
     READS},
    {"CreateBNTEndCommand",
     [](Bench& b) { return b.xml->CreateBNTEndCommand(&b.out, 1) != FAILED; }, READS},
    {"CreateBNTRequestCommand", BuildRequest, READS},
    {"CreateBNTRetCommand",
     [](Bench& b) { return b.xml->CreateBNTRetCommand(&b.out, BNTCMDRET_OK, "p") != FAILED; },
     READS},
    {"CreateResultCommand of BNT", BuildResult<true>, READS},
    {"CreateResultCommand of Detch", BuildResult<false>, READS},
    {"ParseBNTCommand",
     [](Bench& b) {
         return b.xml->ParseBNTCommand(b.parsed, BytesOf(b.command), b.command.size(), &b.err);
     },
     READS},
    {"ParseBNTCmdRet",
     [](Bench& b) {
         return b.xml->ParseBNTCmdRet(b.out, b.second, BytesOf(b.reply), b.reply.size(), &b.err);
     },
     READS},
    {"ParseBNTResult", ParseResult, READS},
};

}  // namespace

std::span<const Operation> XmlOperations() {
    return OPERATIONS;
}
