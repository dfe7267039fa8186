#include "tests/support/Processes.h"

#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <iterator>
#include <string_view>

ChildProcess::ChildProcess(const std::function<int()>& body) : m_id(fork()) {
    if (m_id == 0) {
        _exit(body());
    }
}

ChildProcess::~ChildProcess() {
    if (m_id > 0) {
        Kill();
    }
}

int ChildProcess::Wait() {
    int status = 0;
    const bool isKnown = m_id > 0 && waitpid(m_id, &status, 0) == m_id;
    m_id = 0;
    return isKnown && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

void ChildProcess::Kill() {
    kill(m_id, SIGKILL);
    Wait();
}

std::string UniqueShortName(int index) {
    constexpr std::string_view DIGITS =
        "0123456789abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ";
    std::string name(1, DIGITS.at(static_cast<size_t>(index)));
    for (auto rest = static_cast<size_t>(getpid()); name.size() < 5; rest /= DIGITS.size()) {
        name += DIGITS[rest % DIGITS.size()];
    }
    return name;
}

int ThreadCount() {
    return static_cast<int>(
        std::distance(std::filesystem::directory_iterator("/proc/self/task"), {}));
}

bool ThreadCountFallsTo(int count) {
    for (int i = 0; i < 10000 && ThreadCount() > count; ++i) {
        usleep(1000);
    }
    return ThreadCount() == count;
}
