// A lock that a fork waits for.
#pragma once

#include <mutex>

// Held by every call into the plug-in, so that a fork finds none of its threads inside. Otherwise
// the child might inherit locked, for ever, the C library's locks for the time zone and the message
// catalogue; and it would have a copy of the open log file, which keeps that file's lock when the
// parent is killed before it unlocks.
//
// A process that is made without the handlers of pthread_atfork(), as posix_spawn() and vfork() do,
// does not wait. It has that copy until it execs.
std::mutex& ForkLock();
