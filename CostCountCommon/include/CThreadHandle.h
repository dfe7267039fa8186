// A thread that can be waited for like an event.
#pragma once

#include <pthread.h>

#include <atomic>

#include "CostCountCommon/LockObject.h"
#include "CostCountCommon/include/CHandle.h"
#include "CostCountCommon/include/CompletionLatch.h"

// The thread uses its object until it has ended: the object must live until Wait gave 0. Once
// Create has returned, Wait, TryWait, TimedWait and Cancel may be called on several threads at
// once.
class CThreadHandle : public CHandle, public IHandleWait {
public:
    using Procedure = unsigned int (*)(void*);

    CThreadHandle() = default;
    // The thread is neither joined nor detached.
    ~CThreadHandle() override = default;

    // Starts `procedure(argument)`; its result is not kept. 0, pthread_create's error number, or
    // WAIT_FAILED when this object has created a thread before.
    unsigned int Create(Procedure procedure, void* argument);

    // Does in the calling thread what the created one does. The clean-up's result, 0; WAIT_FAILED
    // before Create.
    unsigned int Run();

    // Waits until the thread has ended. It can be waited for once: later waits, like those before
    // Create and of the thread for itself, give WAIT_FAILED.
    unsigned int Wait() override;
    // WAIT_TIMEOUT while the procedure runs, else what Wait gives.
    unsigned int TryWait() override;
    unsigned int TimedWait(unsigned int milliseconds) override;

    // Asks the thread to end at its next cancellation point; the caller still waits for it.
    void Cancel();

    // 0 before Create.
    pthread_t GetThread() const { return m_thread; }

    // The thread's entry, for which `self` is the object, and what runs when the procedure has
    // returned or the thread is cancelled.
    static void* TempThraedProc(void* self);
    static unsigned int CleanUpForRun(void* self);

private:
    pthread_t m_thread = 0;
    Procedure m_procedure = nullptr;
    void* m_argument = nullptr;
    std::atomic<bool> m_isRunning = false;
    CompletionLatch m_finished{1};
    // A thread that was joined is no longer there to be joined or cancelled.
    CLockObject m_joinLock;
    bool m_isJoined = false;
};
