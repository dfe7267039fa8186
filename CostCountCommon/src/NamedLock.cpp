#include "CostCountCommon/NamedLock.h"

#include <fcntl.h>
#include <pthread.h>

#include <cerrno>
#include <ctime>
#include <exception>
#include <utility>

#include "CostCountCommon/src/Log.h"
#include "CostCountCommon/src/platform/Platform.h"
#include "compatible/osFree.h"

namespace {

constexpr const char* SOURCE = "NamedLock";

constexpr unsigned int FOR_EVER = 0xFFFFFFFF;
constexpr unsigned int TICKS_PER_SECOND_GIVEN = 1000;
constexpr unsigned int RETRY_MILLISECONDS = 10;

void Log(unsigned int line, char level, int code, const char* message) {
    LibLogger().WriteLog(SOURCE, line, level, static_cast<unsigned int>(code), "%s", message);
}

// A semaphore that is open but not (yet) held: closed, and its name taken away, unless it is
// released.
class OpenSemaphore {
public:
    explicit OpenSemaphore(const std::string& systemName)
        : m_systemName(systemName), m_semaphore(sem_open(systemName.c_str(), O_CREAT, 0666, 1)) {
        m_error = errno;
    }
    ~OpenSemaphore() { Close(); }
    OpenSemaphore(const OpenSemaphore&) = delete;
    OpenSemaphore& operator=(const OpenSemaphore&) = delete;

    bool IsOpen() const { return m_semaphore != SEM_FAILED; }
    // Why it is not.
    int Error() const { return m_error; }
    void Close() {
        if (m_semaphore != SEM_FAILED) {
            sem_close(Release());
            sem_unlink(m_systemName.c_str());
        }
    }
    sem_t* Get() const { return m_semaphore; }
    sem_t* Release() { return std::exchange(m_semaphore, SEM_FAILED); }

private:
    const std::string& m_systemName;
    sem_t* m_semaphore;
    int m_error = 0;
};

void CloseSemaphore(void* semaphore) {
    static_cast<OpenSemaphore*>(semaphore)->Close();
}

CNamedLock::Result Acquire(OpenSemaphore& semaphore, unsigned int timeoutSeconds) {
    const clock_t start = clock();
    const unsigned int limit = timeoutSeconds * TICKS_PER_SECOND_GIVEN;  // wraps around
    while (sem_trywait(semaphore.Get()) != 0) {
        if (errno != EAGAIN) {
            Log(__LINE__, 'e', errno, "lock failed.");
            return CNamedLock::FAILED;
        }
        bool isOver = timeoutSeconds == 0;
        if (!isOver) {
            // Not every system unwinds the stack of a thread that is cancelled here.
            pthread_cleanup_push(CloseSemaphore, &semaphore);
            Sleep(RETRY_MILLISECONDS);
            pthread_cleanup_pop(0);
            isOver = clock() - start >= clock_t{limit} && timeoutSeconds != FOR_EVER;
        }
        if (isOver) {
            Log(__LINE__, 'e', EAGAIN, "lock failed: timeout occured.");
            return CNamedLock::TIMED_OUT;
        }
    }
    return CNamedLock::LOCKED;
}

}  // namespace

CNamedLock::~CNamedLock() {
    Unlock();
}

unsigned int CNamedLock::Lock(const char* name, unsigned int timeoutSeconds) try {
    if (m_semaphore != nullptr) {
        return FAILED;
    }
    if (name == nullptr || *name == '\0') {
        Log(__LINE__, 'e', 0, "invalid parameter.");
        return FAILED;
    }
    m_systemName = platform::SemaphoreName(name);
    m_timeoutSeconds = timeoutSeconds;
    OpenSemaphore semaphore(m_systemName);
    if (!semaphore.IsOpen()) {
        Log(__LINE__, 'e', semaphore.Error(), "sem_open failed.");
        return FAILED;
    }
    const Result result = Acquire(semaphore, m_timeoutSeconds);
    if (result == LOCKED) {
        m_semaphore = semaphore.Release();
    }
    return result;
} catch (const std::exception&) {
    return FAILED;  // out of memory
}

int CNamedLock::Unlock() {
    if (m_semaphore != nullptr) {
        sem_post(m_semaphore);
        sem_close(m_semaphore);
        m_semaphore = nullptr;
    }
    return sem_unlink(m_systemName.c_str());
}

bool CNamedLock::IsLocked(const char* name) try {
    if (name == nullptr || *name == '\0') {
        Log(__LINE__, 'e', 0, "invalid parameter.");
        return false;
    }
    const std::string systemName = platform::SemaphoreName(name);
    const OpenSemaphore semaphore(systemName);
    if (!semaphore.IsOpen()) {
        Log(__LINE__, 'e', semaphore.Error(), "sem_open failed.");
        return false;
    }
    if (sem_trywait(semaphore.Get()) == 0) {
        sem_post(semaphore.Get());
        return false;
    }
    if (errno != EAGAIN) {
        return false;
    }
    Log(__LINE__, 'd', EAGAIN, "sem_trywait() already locked.");
    return true;
} catch (const std::exception&) {
    return false;  // out of memory
}
