// Taking a semaphore's name away, also from destructors.
#pragma once

#include <semaphore.h>

#include <cerrno>
#include <exception>
#include <string>

#include "CostCountCommon/src/platform/Platform.h"

// sem_unlink's result for the semaphore that the library calls `name`; -1 with ENOMEM when memory
// is exhausted.
inline int UnlinkSemaphore(const std::string& name) try {
    return sem_unlink(platform::SemaphoreName(name).c_str());
} catch (const std::exception&) {
    errno = ENOMEM;
    return -1;
}
