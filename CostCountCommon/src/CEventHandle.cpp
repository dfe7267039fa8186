#include "CostCountCommon/include/CEventHandle.h"

#include <fcntl.h>

#include <cerrno>
#include <cstring>
#include <exception>
#include <utility>

#include "CostCountCommon/include/CHandleSupport.h"
#include "CostCountCommon/src/Log.h"
#include "CostCountCommon/src/platform/Platform.h"

namespace {

constexpr const char* SOURCE = "CEventHandle";

// The prefix has 21 characters. With a name of at most 5 and a number of at most 4 it stays within
// the 31 that a semaphore's name may have on the narrowest system.
constexpr const char* PREFIX = "K7Q3MZP2WD.RX.qvtrel/";
constexpr size_t SHORT_NAME_LIMIT = 5;
constexpr int UNIQUE_NAME_LIMIT = 10000;

}  // namespace

CEventHandle::~CEventHandle() {
    Close();
    sem_unlink(m_systemName.c_str());
}

std::string CEventHandle::FullNameOf(const std::string& shortName) {
    return PREFIX + shortName;
}

bool CEventHandle::Open(const char* fullName, int oflag) try {
    if (fullName == nullptr) {
        return false;
    }
    std::string name = fullName;
    // Creating takes the other form: it needs a mode and a value.
    std::string systemName = platform::SemaphoreName(name);
    sem_t* semaphore = sem_open(systemName.c_str(), oflag & ~O_CREAT);
    if (semaphore == SEM_FAILED) {
        return false;
    }
    Take(semaphore, std::move(name), std::move(systemName));
    return true;
} catch (const std::exception&) {
    return false;  // out of memory
}

bool CEventHandle::Open(const char* shortName, int oflag, unsigned short mode, unsigned int value,
                        bool unique) try {
    if (shortName == nullptr) {
        LibLogger().WriteLog(SOURCE, __LINE__, 'e', 0, "invalid parameter.");
        return false;
    }
    const std::string base = FullNameOf(shortName);
    const size_t length = std::strlen(shortName);
    if (length == 0 || length > SHORT_NAME_LIMIT) {
        LibLogger().WriteLog(SOURCE, __LINE__, 'e', 0, "pName is illegal parameter.");
        return false;
    }
    std::string name;
    unsigned int error = 0;
    const int limit = unique ? UNIQUE_NAME_LIMIT : 1;
    for (int counter = 0; counter < limit; ++counter) {
        name = counter == 0 ? base : base + std::to_string(counter);
        LibLogger().WriteLog(SOURCE, __LINE__, 'd', 0, "begin sem_open(\"%s\",%d,%d,%u)\n",
                             name.c_str(), oflag, mode, value);
        std::string systemName = platform::SemaphoreName(name);
        sem_t* semaphore = sem_open(systemName.c_str(), oflag, mode_t{mode}, value);
        if (semaphore != SEM_FAILED) {
            Take(semaphore, std::move(name), std::move(systemName));
            return true;
        }
        error = static_cast<unsigned int>(errno);
        if (error != EEXIST) {
            break;
        }
        LibLogger().WriteLog(SOURCE, __LINE__, 'd', error, "named samaphore exists. name=%s",
                             name.c_str());
    }
    LibLogger().WriteLog(SOURCE, __LINE__, 'e', error, "sem_open failed. name=%s", name.c_str());
    return false;
} catch (const std::exception&) {
    return false;  // out of memory
}

void CEventHandle::Take(sem_t* semaphore, std::string name, std::string systemName) {
    Close();
    if (!m_name.empty() && m_name != name) {
        sem_unlink(m_systemName.c_str());  // as at the end of an object that is not opened again
    }
    m_semaphore = semaphore;
    m_isOpen = true;
    m_name.swap(name);
    m_systemName.swap(systemName);
}

void CEventHandle::Close() {
    if (m_isOpen) {
        sem_close(m_semaphore);
        m_semaphore = SEM_FAILED;
        m_isOpen = false;
    }
}

int CEventHandle::Post() {
    return m_isOpen ? sem_post(m_semaphore) : -1;
}

unsigned int CEventHandle::Wait() {
    return m_isOpen && sem_wait(m_semaphore) == 0 ? WAIT_OBJECT_0 : WAIT_FAILED;
}

unsigned int CEventHandle::TryWait() {
    if (!m_isOpen) {
        return WAIT_FAILED;
    }
    if (sem_trywait(m_semaphore) == 0) {
        return WAIT_OBJECT_0;
    }
    return errno == EAGAIN ? WAIT_TIMEOUT : WAIT_FAILED;
}

unsigned int CEventHandle::TimedWait(unsigned int milliseconds) {
    return CHandleSupport::TimedWait(this, milliseconds);
}
