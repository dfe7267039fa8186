// Semaphores are files of one folder here, so no name may hold a slash.
#include "CostCountCommon/src/platform/Platform.h"

namespace platform {

// Different names stay different: what stands for a slash is escaped itself. A slash in front means
// nothing to sem_open.
std::string SemaphoreName(const std::string& name) {
    std::string legal = "/";
    for (size_t at = name.find_first_not_of('/'); at < name.size(); ++at) {
        switch (name[at]) {
            case '/':
                legal += "%2F";
                break;
            case '%':
                legal += "%25";
                break;
            default:
                legal += name[at];
        }
    }
    return legal;
}

}  // namespace platform
