// Uses the installed library: loads the application logger by its key and writes one line, then
// prints the name of the service and the printers, as the settings and the printer list have them.
#include <cstdio>
#include <memory>
#include <string>

#include "CostCountCommon/CMLibLogger.h"
#include "CostCountCommon/CommonUtility.h"
#include "CostCountCommon/CommonXMLPxd.h"

namespace {

int LogOneLine(const char* logFile) {
    CCMLibLogger* logger = CCMLibLogger::getInstance();
    logger->InitLibLogger(logFile, "consumer", "consumer", nullptr);
    if (!logger->IsInitialized()) {
        std::puts("the logger plug-in was not found");
        return 1;
    }
    return logger->writeLogByAppLogger("library", 1, 'i', 0, "hello");
}

bool PrintPrinters(CCommonXmlPxd& xml) {
    std::string path;
    CCommonPrinterInfo* printer = nullptr;
    if (!xml.GetPrinterListFilePath(&path) || !xml.GetPrinterList(path, &printer)) {
        return false;
    }
    while (printer != nullptr) {
        const std::unique_ptr<CCommonPrinterInfo> owner(printer);
        std::string serial;
        std::string name;
        printer->GetSerialNumber(&serial);
        printer->GetPrinterName(&name, 0);
        std::printf("%s %s\n", serial.c_str(), name.c_str());
        printer = printer->GetNextPrinterInfo();
    }
    return true;
}

int PrintData() {
    CCommonXmlPxd xml;
    std::string name;
    if (!xml.InitializeXmlPxd(CCommonUtility::GetLibPath(CCommonUtility::PATH_SYSTEM_SETTING),
                              CCommonUtility::GetLibPath(CCommonUtility::PATH_INSTALL),
                              CCommonUtility::GetLibPath(CCommonUtility::PATH_XML_PARSER), false) ||
        !xml.GetServiceName(&name)) {
        std::puts("the system settings cannot be read");
        return 1;
    }
    std::puts(name.c_str());
    if (!PrintPrinters(xml)) {
        std::puts("the printer list cannot be read");
        return 1;
    }
    return 0;
}

}  // namespace

int main(int, char** argv) {
    return LogOneLine(argv[1]) != 0 ? 1 : PrintData();
}
