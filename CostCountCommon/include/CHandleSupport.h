// Windows-style waits over anything that can be waited for, on any thread. All give a wait code
// (CHandle.h); milliseconds of INFINITE mean for ever.
#pragma once

#include <ctime>

#include "CostCountCommon/include/CHandle.h"

// A handle passed as void* is a CHandle*. One that cannot be waited for, or is null, fails a wait
// for it alone and is passed over among several.
class CHandleSupport {
public:
    static unsigned int WaitForSingleObject(void* handle, unsigned int milliseconds);

    // With `waitAll`, only for ever: a time-out is not supported and fails.
    static unsigned int WaitForMultipleObjects(unsigned long count, void* const* handles,
                                               bool waitAll, unsigned int milliseconds);

    // Waits for each in turn, whatever the results. 0, or WAIT_FAILED when there is none.
    static unsigned int WaitForMultipleObjectsWaitAll(unsigned long count, void* const* handles);

    // Looks at all every 100 milliseconds. Gives the lowest index of a signalled one. The time-out
    // is deliberately counted in processor time of the process, as clock() tells it: a process that
    // only waits waits much longer.
    static unsigned int WaitForMultipleObjectsWaitOne(unsigned long count, void* const* handles,
                                                      unsigned int milliseconds);

    // Waits in a thread of its own, beside another that ends it in time. A signal that comes as the
    // time runs out is either taken (0) or left for the next wait (258), never lost. Cancelling the
    // calling thread ends both.
    static unsigned int TimedWait(IHandleWait* object, unsigned int milliseconds);

    static void MillisecondsToTimespec(unsigned int milliseconds, struct timespec* out);

    // The entries of the two threads of TimedWait.
    static void* TimedWaitWaitingThread(void* context);
    static void* TimedWaitTimerThread(void* context);
};
