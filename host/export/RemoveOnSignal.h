// Removes an unfinished file when the user or the system ends the process.
#pragma once

#include <string>

namespace tallyquist {

// For its lifetime, the signals by which a user or the system asks a process to end
// remove the file at `path` before they end it. One at a time. SIGKILL cannot be seen: then the
// file stays, under the name of an unfinished one.
class RemoveOnSignal {
public:
    explicit RemoveOnSignal(const std::string& path);
    ~RemoveOnSignal();
    RemoveOnSignal(const RemoveOnSignal&) = delete;
    RemoveOnSignal& operator=(const RemoveOnSignal&) = delete;
};

}  // namespace tallyquist
