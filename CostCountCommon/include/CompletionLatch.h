// Counts down to zero; threads wait for that, and may be cancelled while they do.
//
// Waiting for a thread begins here, and only then joins it: a thread that is cancelled within
// pthread_join cannot be followed by the thread sanitizer. For the same reason the count is atomic:
// the sanitizer does not see what the clean-up of a cancelled thread locks.
#pragma once

#include <pthread.h>

#include <atomic>

class CompletionLatch {
public:
    explicit CompletionLatch(int count) : m_count(count) {}
    ~CompletionLatch();
    CompletionLatch(const CompletionLatch&) = delete;
    CompletionLatch& operator=(const CompletionLatch&) = delete;

    void CountDown();
    // A cancellation point while the count is not zero.
    void Wait();

private:
    pthread_mutex_t m_mutex = PTHREAD_MUTEX_INITIALIZER;
    pthread_cond_t m_changed = PTHREAD_COND_INITIALIZER;
    std::atomic<int> m_count;
};
