// The processes that run, as /proc tells.
#include <algorithm>
#include <charconv>
#include <string>
#include <string_view>
#include <utility>

#include "CostCountCommon/src/platform/Platform.h"
#include "CostCountCommon/src/platform/linux/FolderNames.h"
#include "CostCountCommon/src/platform/linux/TextFile.h"

namespace platform {
namespace {

constexpr char FOLDER[] = "/proc/";

template <typename Number>
bool ParseNumber(std::string_view text, Number* number) {
    const auto result = std::from_chars(text.data(), text.data() + text.size(), *number);
    return result.ec == std::errc();
}

// The field of a line `NAME:\tVALUE`; empty when the line holds another one.
std::string_view FieldOf(std::string_view line, std::string_view name) {
    return line.starts_with(name) ? line.substr(name.size()) : std::string_view();
}

// False for a process that ended, whether or not its parent has noticed.
bool ReadStatus(const std::string& path, Process* process) {
    constexpr size_t LARGEST_STATUS = 1 << 16;
    std::string text;
    bool runs = false;
    bool hasUser = false;
    std::string_view rest;
    if (ReadTextFile(path, LARGEST_STATUS, &text)) {
        rest = text;
    }
    while (!hasUser && !rest.empty()) {
        const std::string_view line = rest.substr(0, rest.find('\n'));
        rest.remove_prefix(std::min(line.size() + 1, rest.size()));
        if (const auto name = FieldOf(line, "Name:\t"); !name.empty()) {
            // The kernel writes a backslash or a line feed in a name as an escape, left as it is.
            process->command = name;
        } else if (const auto state = FieldOf(line, "State:\t"); !state.empty()) {
            runs = state.front() != 'Z' && state.front() != 'X';
        } else if (const auto users = FieldOf(line, "Uid:\t"); !users.empty()) {
            hasUser = ParseNumber(users, &process->user);  // the real one comes first
        }
    }
    return runs && hasUser;
}

}  // namespace

bool ListProcesses(std::vector<Process>* processes) {
    std::vector<std::string> names;
    if (!FolderNames(FOLDER, &names)) {
        return false;
    }
    std::vector<Process> found;
    for (const std::string& name : names) {
        Process process{};
        // Files of a process that ends in the meantime cannot be read, which leaves it out.
        if (ParseNumber(name, &process.id) &&
            ReadStatus(std::string(FOLDER).append(name).append("/status"), &process)) {
            found.push_back(std::move(process));
        }
    }
    *processes = std::move(found);
    return true;
}

}  // namespace platform
