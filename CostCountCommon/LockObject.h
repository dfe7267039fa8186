// A mutex within the process, which its owner may lock again.
#pragma once

#include <mutex>

class CLockObject {
public:
    void Lock() { m_mutex.lock(); }
    void Unlock() { m_mutex.unlock(); }

private:
    std::recursive_mutex m_mutex;
};
