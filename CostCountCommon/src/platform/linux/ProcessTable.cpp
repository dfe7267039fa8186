// The processes that run, as /proc tells.
#include <charconv>
#include <filesystem>
#include <fstream>
#include <string_view>
#include <system_error>

#include "CostCountCommon/src/platform/Platform.h"

namespace platform {
namespace {

namespace fs = std::filesystem;

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
bool ReadStatus(const fs::path& path, Process* process) {
    std::ifstream file(path);
    bool runs = false;
    bool hasUser = false;
    for (std::string line; !hasUser && std::getline(file, line);) {
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
    std::vector<Process> found;
    std::error_code error;
    for (fs::directory_iterator entry("/proc", error), end; !error && entry != end;
         entry.increment(error)) {
        Process process{};
        // Files of a process that ends in the meantime cannot be read, which leaves it out.
        if (ParseNumber(entry->path().filename().native(), &process.id) &&
            ReadStatus(entry->path() / "status", &process)) {
            found.push_back(std::move(process));
        }
    }
    if (error) {
        return false;
    }
    *processes = std::move(found);
    return true;
}

}  // namespace platform
