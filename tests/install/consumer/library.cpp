// Uses the installed library: loads the application logger by its key and writes one line, then
// reads a system setting through the XML parser plug-in and prints it.
#include <cstdio>

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

int PrintServiceName() {
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
    return 0;
}

}  // namespace

int main(int, char** argv) {
    return LogOneLine(argv[1]) != 0 ? 1 : PrintServiceName();
}
