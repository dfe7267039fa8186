// A stretch in which the calling thread is not cancelled; a request waits until later.
#pragma once

#include <pthread.h>

class CancellationOff {
public:
    CancellationOff() { pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &m_earlier); }
    ~CancellationOff() { pthread_setcancelstate(m_earlier, nullptr); }
    CancellationOff(const CancellationOff&) = delete;
    CancellationOff& operator=(const CancellationOff&) = delete;

private:
    int m_earlier = PTHREAD_CANCEL_ENABLE;
};
