#include "plugins/zopmekLogger/ForkLock.h"

#include <pthread.h>

namespace {

constinit std::mutex gLock;

void Lock() {
    gLock.lock();
}

void Unlock() {
    gLock.unlock();
}

[[maybe_unused]] const int REGISTERED = pthread_atfork(Lock, Unlock, Unlock);

}  // namespace

std::mutex& ForkLock() {
    return gLock;
}
