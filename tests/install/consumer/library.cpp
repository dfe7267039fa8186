// Loads the application logger by its key through the installed library and writes one line.
#include <cstdio>

#include "CostCountCommon/CMLibLogger.h"

int main(int, char** argv) {
    CCMLibLogger* logger = CCMLibLogger::getInstance();
    logger->InitLibLogger(argv[1], "consumer", "consumer", nullptr);
    if (!logger->IsInitialized()) {
        std::puts("the logger plug-in was not found");
        return 1;
    }
    return logger->writeLogByAppLogger("library", 1, 'i', 0, "hello");
}
