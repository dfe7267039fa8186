// A lock between processes, known by name.
//
// Its quirks are what the cooperating programs rely on. A holder that is killed leaves the lock
// held: the next Lock runs into its time-out, which takes the name away, so that the one after that
// gets a fresh lock. Unlock, IsLocked and a Lock that fails take the name away too, even while
// others hold or await the lock under it: who comes later then gets another lock of the same name.
#pragma once

#include <semaphore.h>

#include <string>

// An object serves one thread at a time; a thread that is cancelled while it waits in Lock leaves
// nothing behind.
class CNamedLock {
public:
    enum Result : unsigned int { LOCKED = 0, TIMED_OUT = 1, FAILED = 2 };

    CNamedLock() = default;
    ~CNamedLock();
    CNamedLock(const CNamedLock&) = delete;
    CNamedLock& operator=(const CNamedLock&) = delete;

    // FAILED when this object holds a lock already. Tries every 10 milliseconds; 0 seconds try
    // once, 0xFFFFFFFF for ever. The time is deliberately a thousand ticks of clock() per second
    // given, that is, processor time of this process, so it passes at another pace than a watch.
    // Failures are logged.
    unsigned int Lock(const char* name, unsigned int timeoutSeconds);

    // Releases what is held, and takes the name away in any case. sem_unlink's result.
    int Unlock();

    // Whether someone holds the lock.
    static bool IsLocked(const char* name);

private:
    std::string m_systemName;  // kept, so that it is taken away also when memory is exhausted
    unsigned int m_timeoutSeconds = 0;
    sem_t* m_semaphore = nullptr;
};
