#include <pthread.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

#include "compatible/osFree.h"

int GetCurrentProcessId() {
    return getpid();
}

unsigned long GetCurrentThreadId() {
    // An integer on one system, a pointer on another; the cast serves both.
    return reinterpret_cast<unsigned long>(pthread_self());
}

bool ProcessExists(int pid) {
    // To kill, a number below 1 names a group of processes, or all of them.
    return pid > 0 && (kill(pid, 0) == 0 || errno == EPERM);
}

unsigned GetLastError() {
    return 1;
}

void DoNothing() {}
