#include "CostCountCommon/include/CHandleSupport.h"

#include <pthread.h>

#include <csignal>
#include <ctime>

#include "CostCountCommon/LockObject.h"
#include "CostCountCommon/include/CompletionLatch.h"
#include "CostCountCommon/src/CancellationOff.h"
#include "compatible/osFree.h"

namespace {

constexpr unsigned int POLL_MILLISECONDS = 100;
constexpr unsigned int TICKS_PER_MILLISECOND_GIVEN = 1000;

IHandleWait* Waitable(void* handle) {
    return dynamic_cast<IHandleWait*>(static_cast<CHandle*>(handle));
}

// What the two threads of a timed wait share with the one that waits for them.
struct TimedWaitContext {
    TimedWaitContext(IHandleWait* object, unsigned int milliseconds)
        : m_object(object), m_milliseconds(milliseconds) {}

    IHandleWait* m_object;
    // Held while threads are made and while one cancels the other: no thread is cancelled before it
    // is stored here.
    CLockObject m_lock;
    pthread_t m_waitingThread = 0;
    pthread_t m_timerThread = 0;
    unsigned int m_milliseconds;
    unsigned int m_result = WAIT_OBJECT_0;
    bool m_isDone = false;
    CompletionLatch m_ended{2};
};

void WaitForStart(TimedWaitContext& context) {
    context.m_lock.Lock();
    context.m_lock.Unlock();
}

void CountEnd(void* context) {
    static_cast<TimedWaitContext*>(context)->m_ended.CountDown();
}

void CancelTimer(TimedWaitContext& context) {
    if (context.m_timerThread != 0) {
        pthread_cancel(context.m_timerThread);
    }
}

// A thread that is done ends by itself.
void CancelWaiting(TimedWaitContext& context) {
    if (!context.m_isDone) {
        pthread_cancel(context.m_waitingThread);
    }
}

// Keeps the program's signals to its own threads: a handler that ran in one of those made here
// would end the wait. A new thread takes the mask over.
class SignalsBlocked {
public:
    SignalsBlocked() {
        sigset_t all;
        sigfillset(&all);
        pthread_sigmask(SIG_SETMASK, &all, &m_earlier);
    }
    ~SignalsBlocked() { pthread_sigmask(SIG_SETMASK, &m_earlier, nullptr); }
    SignalsBlocked(const SignalsBlocked&) = delete;
    SignalsBlocked& operator=(const SignalsBlocked&) = delete;

private:
    sigset_t m_earlier{};
};

// Whether both threads run. When only the waiting one could be made, it has been told to end.
bool StartThreads(TimedWaitContext& context) {
    const SignalsBlocked inTheThreads;
    if (pthread_create(&context.m_waitingThread, nullptr, CHandleSupport::TimedWaitWaitingThread,
                       &context) != 0) {
        context.m_waitingThread = 0;
        return false;
    }
    if (pthread_create(&context.m_timerThread, nullptr, CHandleSupport::TimedWaitTimerThread,
                       &context) != 0) {
        context.m_timerThread = 0;
        context.m_ended.CountDown();
        pthread_cancel(context.m_waitingThread);
        return false;
    }
    return true;
}

// False when a thread cannot be joined. Both have ended or are about to.
bool JoinThreads(const TimedWaitContext& context) {
    const CancellationOff uncancelled;
    bool isJoined = pthread_join(context.m_waitingThread, nullptr) == 0;
    if (context.m_timerThread != 0) {
        isJoined = pthread_join(context.m_timerThread, nullptr) == 0 && isJoined;
    }
    return isJoined;
}

// The thread that called TimedWait is cancelled: nothing may use its stack any more.
void EndThreads(void* argument) {
    auto& context = *static_cast<TimedWaitContext*>(argument);
    context.m_lock.Lock();
    CancelTimer(context);
    CancelWaiting(context);
    context.m_lock.Unlock();
    JoinThreads(context);
}

}  // namespace

unsigned int CHandleSupport::WaitForSingleObject(void* handle, unsigned int milliseconds) {
    IHandleWait* object = Waitable(handle);
    if (object == nullptr) {
        return WAIT_FAILED;
    }
    if (milliseconds == INFINITE) {
        return object->Wait();
    }
    const unsigned int result = object->TryWait();
    if (result != WAIT_TIMEOUT || milliseconds == 0) {
        return result;
    }
    return object->TimedWait(milliseconds);
}

unsigned int CHandleSupport::WaitForMultipleObjects(unsigned long count, void* const* handles,
                                                    bool waitAll, unsigned int milliseconds) {
    if (!waitAll) {
        return WaitForMultipleObjectsWaitOne(count, handles, milliseconds);
    }
    return milliseconds == INFINITE ? WaitForMultipleObjectsWaitAll(count, handles) : WAIT_FAILED;
}

unsigned int CHandleSupport::WaitForMultipleObjectsWaitAll(unsigned long count,
                                                           void* const* handles) {
    if (count == 0 || handles == nullptr) {
        return WAIT_FAILED;
    }
    for (unsigned long i = 0; i < count; ++i) {
        IHandleWait* object = Waitable(handles[i]);
        if (object != nullptr) {
            object->Wait();
        }
    }
    return WAIT_OBJECT_0;
}

unsigned int CHandleSupport::WaitForMultipleObjectsWaitOne(unsigned long count,
                                                           void* const* handles,
                                                           unsigned int milliseconds) {
    if (count == 0 || handles == nullptr) {
        return WAIT_FAILED;
    }
    const clock_t start = clock();
    const unsigned int limit = milliseconds * TICKS_PER_MILLISECOND_GIVEN;  // wraps around
    for (;;) {
        for (unsigned long i = 0; i < count; ++i) {
            IHandleWait* object = Waitable(handles[i]);
            if (object != nullptr && object->TryWait() == WAIT_OBJECT_0) {
                return static_cast<unsigned int>(i);
            }
        }
        if (milliseconds != INFINITE && clock() - start >= clock_t{limit}) {
            return WAIT_TIMEOUT;
        }
        Sleep(POLL_MILLISECONDS);
    }
}

unsigned int CHandleSupport::TimedWait(IHandleWait* object, unsigned int milliseconds) {
    if (object == nullptr) {
        return WAIT_FAILED;
    }
    if (milliseconds == INFINITE) {
        return object->Wait();
    }
    TimedWaitContext context(object, milliseconds);
    context.m_lock.Lock();
    const bool isStarted = StartThreads(context);
    context.m_lock.Unlock();
    if (context.m_waitingThread == 0) {
        return WAIT_FAILED;
    }
    pthread_cleanup_push(EndThreads, &context);
    context.m_ended.Wait();
    pthread_cleanup_pop(0);
    if (!JoinThreads(context) || !isStarted) {
        return WAIT_FAILED;
    }
    return context.m_isDone ? context.m_result : WAIT_TIMEOUT;
}

void* CHandleSupport::TimedWaitWaitingThread(void* argument) {
    auto& context = *static_cast<TimedWaitContext*>(argument);
    pthread_cleanup_push(CountEnd, argument);
    WaitForStart(context);
    const unsigned int result = context.m_object->Wait();
    // From here on there is no cancellation point: what the wait has taken is reported.
    context.m_lock.Lock();
    context.m_result = result;
    context.m_isDone = true;
    CancelTimer(context);
    context.m_lock.Unlock();
    pthread_cleanup_pop(1);
    return nullptr;
}

void* CHandleSupport::TimedWaitTimerThread(void* argument) {
    auto& context = *static_cast<TimedWaitContext*>(argument);
    pthread_cleanup_push(CountEnd, argument);
    WaitForStart(context);
    struct timespec time {};
    MillisecondsToTimespec(context.m_milliseconds, &time);
    nanosleep(&time, nullptr);
    context.m_lock.Lock();
    CancelWaiting(context);
    context.m_lock.Unlock();
    pthread_cleanup_pop(1);
    return nullptr;
}

void CHandleSupport::MillisecondsToTimespec(unsigned int milliseconds, struct timespec* out) {
    out->tv_sec = static_cast<time_t>(milliseconds / 1000);
    out->tv_nsec = static_cast<long>(milliseconds % 1000 * 1000000);
}
