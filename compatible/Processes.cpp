#include <pthread.h>
#include "compatible/osFree.h"
unsigned long GetCurrentThreadId() { return pthread_self(); }
#include <ctime>
#include <cerrno>
#include "compatible/osFree.h"
void Sleep(unsigned int ms) { const unsigned us = ms*1000U; struct timespec t{static_cast<time_t>(us/1000000U), static_cast<long>(us%1000000U*1000U)}; while (nanosleep(&t,&t)!=0 && errno==EINTR) {} }
