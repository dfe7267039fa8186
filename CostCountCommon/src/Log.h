// The library logger as the library itself calls it.
#pragma once

#include "CostCountCommon/CMLibLogger.h"

// The process-wide logger, or, when memory for it is exhausted, one that discards every record.
inline CCMLibLogger& LibLogger() {
    CCMLibLogger* logger = CCMLibLogger::getInstance();
    if (logger == nullptr) {
        static CCMLibLogger silent;
        return silent;
    }
    return *logger;
}
