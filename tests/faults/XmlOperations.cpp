// The operations of CCommonXmlPxd, and those of CCommonUtility that make one.
#include <filesystem>

#include "CostCountCommon/CommonUtility.h"
#include "tests/faults/Operation.h"

namespace {

using Xml = CCommonXmlPxd;
using Bytes = const unsigned char*;

constexpr unsigned int FAILED = 0xFFFFFFFF;
constexpr const char* USER = GROUP_FOLDER "/CMSystemSetting.cfg";
constexpr const char* GROUP_DB = GROUP_FOLDER "/db_settings";
constexpr const char* DB = "target/db_settings";
constexpr const char* PRINTERS = "target/printers";
constexpr const char* COSTS = "target/file";
constexpr const char* CAPS = LOCAL_FOLDER "/PrinterCaps/file";
constexpr unsigned int READS = PARSER | MEMORY;
constexpr unsigned int WRITES = PARSER | MEMORY | SYSTEM | KILL;
constexpr Promise WHOLE = Promise::WHOLE;
constexpr Promise PARTIAL = Promise::PARTIAL;

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
bool WritePrinters(Bench& b) {
    return b.xml->CreatePrinterListFile(PRINTERS, b.Written().printers) != FAILED;
}
bool WriteCosts(Bench& b) {
    return b.xml->CreateUnitCostFile(b.name, "target/", b.Written().costs) == 0;
}
bool WriteCaps(Bench& b) {
    return b.xml->CreatePrinterCapsFile(b.name, b.Written().caps) == 0;
}
template <bool (*WRITE)(Bench&)>
void Written(Bench& b) {
    WRITE(b);
}
void GroupDb(Bench& b) {
    b.xml->CreateDBSettingFile(GROUP_FOLDER, "path", "0");
}
void NoDb(Bench&) {
    std::filesystem::remove(DB);
}
void EmptyDb(Bench&) {
    WriteFile(DB, ReadFile(CCommonUtility::GetDefaultDBSettingsFilePath()));
}
void AsItIs(Bench&) {}

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

template <typename Build>
bool BuildFor(Bench& b, Build build) {
    return build(b.records[0].printers.front()) != FAILED;
}
bool BuildGet(Bench& b) {
    return BuildFor(
        b, [&](auto& p) { return b.xml->CreateBNTGetCommand(&b.out, BNTCOMMAND_HIGH, p, 1); });
}
bool BuildExport(Bench& b) {
    return BuildFor(b, [&](auto& p) {
        return b.xml->CreateBNTScheduledExportCommand(&b.out, BNTCOMMAND_HIGH, p, 1);
    });
}
bool BuildRequest(Bench& b) {
    return b.xml->CreateBNTRequestCommand(&b.out, BNTCOMMAND_REQUEST_START, BNTCOMMAND_HIGH, true,
                                          1, "event") != FAILED;
}
// That the address changed is told by a word that a message may lack, and so the failure of that
// word alone would change the message.
template <bool IS_BNT>
bool BuildResult(Bench& b) {
    return BuildFor(b, [&](auto& p) {
        return b.xml->CreateResultCommand(&b.out, p, BNTRESULT_SUCCESS_NEW, IS_BNT, false, true);
    });
}
bool ParseResult(Bench& b) {
    bool last = false;
    bool ipChanged = false;
    return b.xml->ParseBNTResult(b.out, b.second, last, reinterpret_cast<Bytes>(b.result.data()),
                                 b.result.size(), &b.err, &ipChanged);
}

const Operation OPERATIONS[] = {
    {"GetElementValueSysCommSettingFile", USER, AsItIs,
     [](Bench& b) { return b.xml->GetElementValueSysCommSettingFile(XMLTAG_SYS_MAXDETCH, &b.out); },
     WHOLE, READS},
    {"GetServiceName", USER, AsItIs, Get<&Xml::GetServiceName>, WHOLE, READS},
    {"GetBaseTick", USER, AsItIs, Get<&Xml::GetBaseTick>, WHOLE, READS},
    {"GetErrLogLevel", USER, AsItIs, Get<&Xml::GetErrLogLevel>, WHOLE, READS},
    {"GetPrinterListFilePath", USER, AsItIs, Get<&Xml::GetPrinterListFilePath>, WHOLE, READS},
    {"GetDBSettingFilePath", USER, AsItIs, Get<&Xml::GetDBSettingFilePath>, WHOLE, READS},
    {"GetErrLogFilePath", USER, AsItIs, Get<&Xml::GetErrLogFilePath>, WHOLE, READS},
    {"GetScheduledExportSettingFilePath", USER, AsItIs,
     Get<&Xml::GetScheduledExportSettingFilePath>, WHOLE, READS},
    {"GetScheduledExportLogFilePath", USER, AsItIs, Get<&Xml::GetScheduledExportLogFilePath>, WHOLE,
     READS},
    {"GetBNTPipeName", USER, AsItIs,
     [](Bench& b) { return b.xml->GetBNTPipeName(&b.out, &b.second, true); }, WHOLE, READS},
    {"GetDetchPipeName", nullptr, nullptr, Get<&Xml::GetDetchPipeName>, WHOLE, MEMORY},
    {"GetRetryData", USER, AsItIs, GetRetryData, PARTIAL, READS},
    {"SetElementBySysComSettingValue", USER, AsItIs,
     [](Bench& b) {
         return b.xml->SetElementBySysComSettingValue(b.root, XMLTAG_DB_JOBLOGDB_PATH,
                                                      XMLTAG_SYS_ACTIONLOGPATH);
     },
     WHOLE, READS},

    {"CreateDBSettingFile", DB, nullptr, WriteDb, WHOLE, WRITES},
    {"GetDBSetting", DB, Written<WriteDb>,
     [](Bench& b) { return b.xml->GetDBSetting("target", &b.out, &b.second); }, WHOLE, READS},
    {"GetElementValueDBSettingFile", GROUP_DB, GroupDb,
     [](Bench& b) { return b.xml->GetElementValueDBSettingFile(XMLTAG_DB_JOBLOGDB_PATH, &b.out); },
     WHOLE, READS},
    {"SetElementByDBSettingValue", GROUP_DB, GroupDb,
     [](Bench& b) {
         return b.xml->SetElementByDBSettingValue(b.root, XMLTAG_DB_JOBLOGDB_PATH,
                                                  XMLTAG_DB_JOBLOGDB_PATH);
     },
     WHOLE, READS},
    {"CCommonUtility::CreateDBSettingFile", DB, nullptr,
     [](Bench& b) {
         return CCommonUtility::CreateDBSettingFile("target", b.Written().text, "0") == 0;
     },
     WHOLE, READS},
    {"CCommonUtility::GetDBSetting", DB, Written<WriteDb>,
     [](Bench& b) { return CCommonUtility::GetDBSetting("target", &b.out, &b.second); }, WHOLE,
     READS},
    {"CheckDBSettingFile", DB, NoDb,
     [](Bench&) { return CCommonUtility::CheckDBSettingFile("target"); }, Promise::KEPT,
     READS | SYSTEM},
    {"initializeDBPath", DB, EmptyDb,
     [](Bench&) { return CCommonUtility::initializeDBPath("target"); }, WHOLE, READS | SYSTEM},

    {"CreatePrinterListFile", PRINTERS, nullptr, WritePrinters, WHOLE, WRITES},
    {"GetPrinterList", PRINTERS, Written<WritePrinters>,
     [](Bench& b) { return b.xml->GetPrinterList(PRINTERS, &b.printers); }, WHOLE, READS},
    {"GetPrinterElements", PRINTERS, Written<WritePrinters>, StepToPrinter, PARTIAL, READS},
    {"CreateUnitCostFile", COSTS, nullptr, WriteCosts, WHOLE, WRITES},
    {"GetUnitCost", COSTS, Written<WriteCosts>,
     [](Bench& b) { return b.xml->GetUnitCost(b.name, "target/", b.costs); }, PARTIAL, READS},
    // Deliberately tells of a failed save only.
    {"CreatePrinterCapsFile", CAPS, nullptr, WriteCaps, Promise::UNTOLD, WRITES},
    {"GetPrinterCaps", CAPS, Written<WriteCaps>,
     [](Bench& b) { return b.xml->GetPrinterCaps(b.name, b.caps); }, PARTIAL, READS},
    {"GetUserSetting", nullptr, nullptr, [](Bench& b) { return b.xml->GetUserSetting(b.settings); },
     PARTIAL, READS},

    {"CreateBNTGetCommand", nullptr, nullptr, BuildGet, WHOLE, READS},
    {"CreateBNTScheduledExportCommand", nullptr, nullptr, BuildExport, WHOLE, READS},
    {"CreateBNTEndCommand", nullptr, nullptr,
     [](Bench& b) { return b.xml->CreateBNTEndCommand(&b.out, 1) != FAILED; }, WHOLE, READS},
    {"CreateBNTRequestCommand", nullptr, nullptr, BuildRequest, WHOLE, READS},
    {"CreateBNTRetCommand", nullptr, nullptr,
     [](Bench& b) { return b.xml->CreateBNTRetCommand(&b.out, BNTCMDRET_OK, "p") != FAILED; },
     WHOLE, READS},
    {"CreateResultCommand of BNT", nullptr, nullptr, BuildResult<true>, WHOLE, READS},
    {"CreateResultCommand of Detch", nullptr, nullptr, BuildResult<false>, WHOLE, READS},
    {"ParseBNTCommand", nullptr, nullptr,
     [](Bench& b) {
         return b.xml->ParseBNTCommand(b.parsed, reinterpret_cast<Bytes>(b.command.data()),
                                       b.command.size(), &b.err);
     },
     WHOLE, READS},
    {"ParseBNTCmdRet", nullptr, nullptr,
     [](Bench& b) {
         return b.xml->ParseBNTCmdRet(b.out, b.second, reinterpret_cast<Bytes>(b.reply.data()),
                                      b.reply.size(), &b.err);
     },
     WHOLE, READS},
    {"ParseBNTResult", nullptr, nullptr, ParseResult, WHOLE, READS},
};

}  // namespace

std::span<const Operation> XmlOperations() {
    return OPERATIONS;
}
