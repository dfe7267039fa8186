#include "CostCountCommon/include/CompletionLatch.h"

namespace {

void Unlock(void* mutex) {
    pthread_mutex_unlock(static_cast<pthread_mutex_t*>(mutex));
}

}  // namespace

CompletionLatch::~CompletionLatch() {
    pthread_cond_destroy(&m_changed);
    pthread_mutex_destroy(&m_mutex);
}

void CompletionLatch::CountDown() {
    pthread_mutex_lock(&m_mutex);
    --m_count;
    pthread_cond_broadcast(&m_changed);
    pthread_mutex_unlock(&m_mutex);
}

void CompletionLatch::Wait() {
    pthread_mutex_lock(&m_mutex);
    // A handler, not a destructor: not every system unwinds the stack of a cancelled thread.
    pthread_cleanup_push(Unlock, &m_mutex);
    while (m_count > 0) {
        pthread_cond_wait(&m_changed, &m_mutex);
    }
    pthread_cleanup_pop(1);
}
