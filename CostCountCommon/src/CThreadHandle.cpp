#include "CostCountCommon/include/CThreadHandle.h"

#include "CostCountCommon/include/CHandleSupport.h"
#include "CostCountCommon/src/CancellationOff.h"

namespace {

void RunCleanUp(void* self) {
    CThreadHandle::CleanUpForRun(self);
}

void CountDown(void* latch) {
    static_cast<CompletionLatch*>(latch)->CountDown();
}

}  // namespace

unsigned int CThreadHandle::Create(Procedure procedure, void* argument) {
    if (m_thread != 0) {
        return WAIT_FAILED;
    }
    m_procedure = procedure;
    m_argument = argument;
    m_isRunning = true;
    // Not into the member: it stays 0 when there is no thread.
    pthread_t thread = 0;
    const int error = pthread_create(&thread, nullptr, TempThraedProc, this);
    if (error != 0) {
        m_isRunning = false;
        return static_cast<unsigned int>(error);
    }
    m_thread = thread;
    return 0;
}

void* CThreadHandle::TempThraedProc(void* self) {
    auto* thread = static_cast<CThreadHandle*>(self);
    pthread_cleanup_push(CountDown, &thread->m_finished);
    pthread_cleanup_push(RunCleanUp, self);
    thread->m_procedure(thread->m_argument);
    pthread_cleanup_pop(1);
    pthread_cleanup_pop(1);
    return nullptr;
}

unsigned int CThreadHandle::Run() {
    if (m_procedure == nullptr) {
        return WAIT_FAILED;
    }
    pthread_cleanup_push(RunCleanUp, this);
    m_procedure(m_argument);
    pthread_cleanup_pop(0);
    return CleanUpForRun(this);
}

unsigned int CThreadHandle::CleanUpForRun(void* self) {
    static_cast<CThreadHandle*>(self)->m_isRunning = false;
    return 0;
}

unsigned int CThreadHandle::Wait() {
    if (m_thread == 0 || pthread_equal(m_thread, pthread_self()) != 0) {
        return WAIT_FAILED;
    }
    m_finished.Wait();
    // The thread is on its way out, so this takes no time worth being cancelled in.
    const CancellationOff uncancelled;
    m_joinLock.Lock();
    const bool isJoined = !m_isJoined && pthread_join(m_thread, nullptr) == 0;
    m_isJoined = m_isJoined || isJoined;
    m_joinLock.Unlock();
    return isJoined ? WAIT_OBJECT_0 : WAIT_FAILED;
}

unsigned int CThreadHandle::TryWait() {
    if (m_thread == 0) {
        return WAIT_FAILED;
    }
    return m_isRunning ? WAIT_TIMEOUT : Wait();
}

unsigned int CThreadHandle::TimedWait(unsigned int milliseconds) {
    return m_thread == 0 ? WAIT_FAILED : CHandleSupport::TimedWait(this, milliseconds);
}

void CThreadHandle::Cancel() {
    m_joinLock.Lock();
    if (m_thread != 0 && !m_isJoined) {
        pthread_cancel(m_thread);
    }
    m_joinLock.Unlock();
}
