// An event over a named semaphore, seen by all processes that know its name.
#pragma once

#include <semaphore.h>

#include <string>

#include "CostCountCommon/include/CHandle.h"

// Each Post lets one wait through, in whichever process. An object serves several threads once it
// is open.
class CEventHandle : public CHandle, public IHandleWait {
public:
    CEventHandle() = default;
    // Closes the semaphore and takes its name away, deliberately also when this object only opened
    // it: who has it open keeps it, nobody finds it any more.
    ~CEventHandle() override;

    // Opens an existing semaphore by its whole name, with sem_open's flags.
    bool Open(const char* fullName, int oflag);

    // Creates or opens the semaphore FullNameOf(shortName), the short name having 1 to 5
    // characters. With `unique` (and O_CREAT | O_EXCL) a name that exists is followed by a number,
    // 1 to 9999, so that the event gets one of its own. Failures are logged.
    bool Open(const char* shortName, int oflag, unsigned short mode, unsigned int value,
              bool unique);

    // The name stays, for the destructor.
    void Close();

    // sem_post's result, -1 when not open.
    int Post();

    // WAIT_OBJECT_0, else WAIT_FAILED, which includes a signal handler that interrupts the wait.
    unsigned int Wait() override;
    unsigned int TryWait() override;
    unsigned int TimedWait(unsigned int milliseconds) override;

    // The whole name, by which another process can open the event; empty when none was opened.
    const std::string& GetName() const { return m_name; }

    // The application group's prefix and `shortName`. All cooperating processes use the same.
    // Throws std::bad_alloc.
    static std::string FullNameOf(const std::string& shortName);

private:
    void Take(sem_t* semaphore, std::string name, std::string systemName);

    std::string m_name;
    sem_t* m_semaphore = SEM_FAILED;
    bool m_isOpen = false;
    std::string m_systemName;  // kept, so that it is taken away also when memory is exhausted
};
