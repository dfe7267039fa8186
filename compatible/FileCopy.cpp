#include <exception>

#include "CostCountCommon/src/platform/Platform.h"
#include "compatible/osFree.h"

bool CopyFile(const char* from, const char* to, int failIfExists) try {
    return from != nullptr && to != nullptr && platform::CopyWholeFile(from, to, failIfExists != 0);
} catch (const std::exception&) {
    return false;  // out of memory
}
