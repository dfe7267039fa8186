// How CCommonUtility logs: under one source name, whichever of its files it is.
#pragma once

#include "CostCountCommon/src/Log.h"

namespace utility {

inline constexpr const char* SOURCE = "CommonUtility";

inline void LogError(unsigned int line, const char* message, int code = 0) {
    LibLogger().WriteLog(SOURCE, line, 'e', static_cast<unsigned int>(code), "%s", message);
}

}  // namespace utility
