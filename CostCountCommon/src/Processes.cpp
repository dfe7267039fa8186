// Starts other programs and finds the background service.
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <exception>
#include <string>
#include <string_view>
#include <vector>

#include "CostCountCommon/include/MacUtility.h"
#include "CostCountCommon/src/BundleFolders.h"
#include "CostCountCommon/src/Log.h"
#include "CostCountCommon/src/platform/Platform.h"
#include "compatible/Ascii.h"
#include "compatible/Utf8.h"
#include "compatible/osFree.h"

namespace {

constexpr char LOG_SOURCE[] = "MacUtility";

// Where a launch reports its failures.
struct LogLines {
    unsigned int notText;
    unsigned int notLaunched;
};

constexpr LogLines CREATE_PROCESS_LINES{276, 291};
constexpr LogLines EXECUTE_PROCESS_LINES{315, 332};

// What a program can be given: text without the character that ends it.
bool IsArgument(const std::string& text) {
    return IsUtf8(text) && text.find('\0') == std::string::npos;
}

pid_t Launch(const std::string& modulePath, const std::string& params, const LogLines& lines) {
    if (!IsArgument(modulePath) || !IsArgument(params)) {
        LibLogger().WriteLog(LOG_SOURCE, lines.notText, 'e', 0, "modulePath or params is nil.");
        return -1;
    }
    platform::LaunchFailure failure;
    const pid_t process = platform::Launch(modulePath, params, &failure);
    if (process < 0) {
        LibLogger().WriteLog(LOG_SOURCE, lines.notLaunched, 'e', 0,
                             "launch faild. exception name=%s reason=%s", failure.name.c_str(),
                             failure.reason.c_str());
    }
    return process;
}

}  // namespace

int CreateProcessAsUser(const std::string& modulePath, const std::string& params) try {
    return Launch(modulePath, params, CREATE_PROCESS_LINES);
} catch (const std::exception&) {
    return -1;  // out of memory
}

int ExecuteProcess(const std::string& modulePath, const std::string& params) try {
    const pid_t process = Launch(modulePath, params, EXECUTE_PROCESS_LINES);
    if (process < 0) {
        return -1;
    }
    int status = 0;
    pid_t ended = 0;
    do {
        ended = waitpid(process, &status, 0);
    } while (ended < 0 && errno == EINTR);
    // These bits are 0 for a child that a signal ended, which callers take for success.
    return ended < 0 ? -1 : (status >> 8) & 0xFF;
} catch (const std::exception&) {
    return -1;  // out of memory
}

bool CheckStartedBNT(PROCESS_INFORMATION* info) try {
    std::vector<platform::Process> processes;
    std::string path;
    if (info == nullptr || !platform::ListProcesses(&processes) ||
        !GetPluginFilePath("bnt_path", &path)) {
        return false;
    }
    const std::string_view service = bundle::LastComponent(path);
    // No path is told to a login item that lies outside the application.
    if (service.empty()) {
        return false;
    }
    const auto found =
        std::find_if(processes.begin(), processes.end(), [&](const platform::Process& process) {
            return process.user == getuid() && IsEqualAsciiNoCase(process.command, service);
        });
    if (found == processes.end()) {
        return false;
    }
    info->dwProcessId = static_cast<uint32_t>(found->id);
    return true;
} catch (const std::exception&) {
    return false;  // out of memory
}

// By value because callers call it by its declared type.
// NOLINTNEXTLINE(performance-unnecessary-value-param)
bool CheckConnectBNT(std::string path) {
    PROCESS_INFORMATION ignored{};
    return PathFileExists(path.c_str()) && CheckStartedBNT(&ignored);
}
