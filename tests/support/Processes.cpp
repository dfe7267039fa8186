#include "tests/support/Processes.h"

#include <fcntl.h>
#include <semaphore.h>
#include <sys/file.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <iterator>
#include <stdexcept>
#include <string_view>

#include "CostCountCommon/include/CEventHandle.h"
#include "CostCountCommon/src/platform/Platform.h"

ChildProcess::ChildProcess(const std::function<int()>& body) : m_id(fork()) {
    if (m_id == 0) {
        alarm(60);  // ends a child that hangs, and one that a killed test left behind
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
    sem_unlink(platform::SemaphoreName(CEventHandle::FullNameOf(name)).c_str());
    return name;
}

Turn::Turn(const std::string& name)
    : m_file(open(("/tmp/tallyquist-test-" + name).c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666)) {
    if (m_file < 0 || flock(m_file, LOCK_EX) != 0) {
        throw std::runtime_error("no turn at " + name);
    }
}

Turn::~Turn() {
    close(m_file);
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
