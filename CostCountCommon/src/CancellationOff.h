// Keeps the calling thread from being cancelled for the time of a scope.
#pragma once

#include <pthread.h>

// For calls that make or give back something of the system. A cancellation that strikes in the
// middle of one loses what it made, and one that strikes in a destructor ends the process. It is
// not lost: it takes effect at the next cancellation point after the scope.
class CancellationOff {
public:
    CancellationOff() { pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &m_earlier); }
    ~CancellationOff() { pthread_setcancelstate(m_earlier, nullptr); }
    CancellationOff(const CancellationOff&) = delete;
    CancellationOff& operator=(const CancellationOff&) = delete;

private:
    int m_earlier = PTHREAD_CANCEL_ENABLE;
};
