// What only Darwin's own calls do: copying files with all that belongs to them, and the process
// table.
#include <copyfile.h>
#include <sys/proc.h>
#include <sys/stat.h>
#include <sys/sysctl.h>

#include <cerrno>
#include <cstdlib>
#include <memory>
#include <utility>

#include "CostCountCommon/src/platform/Platform.h"

namespace platform {
namespace {

struct Free {
    void operator()(void* memory) const { std::free(memory); }
};

using ProcessTable = std::unique_ptr<kinfo_proc, Free>;

// Null when the system does not tell. The table may grow between the question for its size and the
// one for its contents; then both are asked again.
ProcessTable ReadProcessTable(size_t* count) {
    int name[] = {CTL_KERN, KERN_PROC, KERN_PROC_ALL, 0};
    constexpr u_int PARTS = 4;
    for (;;) {
        size_t size = 0;
        if (sysctl(name, PARTS, nullptr, &size, nullptr, 0) != 0) {
            return nullptr;
        }
        ProcessTable table(static_cast<kinfo_proc*>(std::malloc(size)));
        if (table == nullptr) {
            return nullptr;
        }
        if (sysctl(name, PARTS, table.get(), &size, nullptr, 0) == 0) {
            *count = size / sizeof(kinfo_proc);
            return table;
        }
        if (errno != ENOMEM) {
            return nullptr;
        }
    }
}

}  // namespace

bool ListProcesses(std::vector<Process>* processes) {
    size_t count = 0;
    const ProcessTable table = ReadProcessTable(&count);
    if (table == nullptr) {
        return false;
    }
    std::vector<Process> found;
    found.reserve(count);
    for (size_t at = 0; at < count; ++at) {
        const kinfo_proc& entry = table.get()[at];
        // One that ended stays in the table until its parent asks for its status.
        if (entry.kp_proc.p_stat != SZOMB) {
            // The kernel ends the name, which it may cut, with a NUL.
            found.push_back(
                {entry.kp_proc.p_pid, entry.kp_eproc.e_pcred.p_ruid, entry.kp_proc.p_comm});
        }
    }
    *processes = std::move(found);
    return true;
}

bool CopyOpenFile(int from, int to) {
    if (fcopyfile(from, to, nullptr, COPYFILE_ALL) != 0) {
        return false;
    }
    // A copy that is locked as its source is could not be given its name.
    fchflags(to, 0);
    return true;
}

}  // namespace platform
