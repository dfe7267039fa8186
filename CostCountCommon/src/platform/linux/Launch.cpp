// Starts programs.
#include <signal.h>
#include <spawn.h>
#include <unistd.h>

#include <array>
#include <cstring>

#include "CostCountCommon/src/platform/Platform.h"

namespace platform {
namespace {

// What the child is not to inherit: descriptors beyond the standard streams, blocked signals, and
// signals that this process ignores for reasons of its own. A program that starts with SIGPIPE or
// SIGXFSZ ignored runs on where it should end, one with SIGCHLD ignored cannot wait for children.
class SpawnSettings {
public:
    SpawnSettings() {
        m_hasActions = Succeeded(posix_spawn_file_actions_init(&m_actions));
        m_hasAttributes = Succeeded(posix_spawnattr_init(&m_attributes));
        if (m_error != 0) {
            return;
        }
        Succeeded(posix_spawn_file_actions_addclosefrom_np(&m_actions, STDERR_FILENO + 1));
        sigset_t signals;
        sigemptyset(&signals);
        Succeeded(posix_spawnattr_setsigmask(&m_attributes, &signals));
        for (const int signal : {SIGPIPE, SIGXFSZ, SIGCHLD}) {
            sigaddset(&signals, signal);
        }
        Succeeded(posix_spawnattr_setsigdefault(&m_attributes, &signals));
        Succeeded(posix_spawnattr_setflags(&m_attributes,
                                           POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF));
    }
    ~SpawnSettings() {
        if (m_hasActions) {
            posix_spawn_file_actions_destroy(&m_actions);
        }
        if (m_hasAttributes) {
            posix_spawnattr_destroy(&m_attributes);
        }
    }
    SpawnSettings(const SpawnSettings&) = delete;
    SpawnSettings& operator=(const SpawnSettings&) = delete;

    // 0 or an error number.
    int Spawn(pid_t* process, char* const* arguments) const {
        return m_error != 0 ? m_error
                            : posix_spawn(process, arguments[0], &m_actions, &m_attributes,
                                          arguments, environ);
    }

private:
    // Remembers the first error.
    bool Succeeded(int error) {
        m_error = m_error != 0 ? m_error : error;
        return error == 0;
    }

    posix_spawn_file_actions_t m_actions{};
    posix_spawnattr_t m_attributes{};
    bool m_hasActions = false;
    bool m_hasAttributes = false;
    int m_error = 0;
};

std::string TextOrNumber(const char* text, int error) {
    return text != nullptr ? text : std::to_string(error);
}

}  // namespace

pid_t Launch(const std::string& path, const std::string& argument, LaunchFailure* failure) {
    // The array of arguments takes pointers to what may be changed.
    std::string program = path;
    std::string parameter = argument;
    const std::array<char*, 3> arguments{program.data(), parameter.data(), nullptr};
    pid_t process = -1;
    const int error = SpawnSettings().Spawn(&process, arguments.data());
    if (error == 0) {
        return process;
    }
    failure->name = TextOrNumber(strerrorname_np(error), error);
    // Not the text in the user's language: it goes into a log.
    failure->reason =
        std::string(path).append(": ").append(TextOrNumber(strerrordesc_np(error), error));
    return -1;
}

}  // namespace platform
