// The application logger: appends one line per record to the log file that the settings name.
#pragma once

#include "CostCountCommon/CMLibLogger.h"

// Writes one line with the local time, the process, the level, `file`:`line`, the code, the module
// and the message. Returns 0 when the line is in the file, else an errno value; it reports failures
// in no other way, a signal included, and leaves errno alone.
//
// `settings` belongs to the caller and is only read; null gives EINVAL. The texts are
// NUL-terminated and a null one counts as empty; the texts inside the record may fill their field
// to the last byte. `level` is one of the characters e, w, i, d. `reserved` is not looked at.
//
// May be called from any thread and any number of processes for one file, also in the child of a
// fork, but not in a signal handler, nor may one fork while it interrupts a call. Lines are not
// mixed, and one is cut only when its writer is killed or a failed write cannot be undone. This
// rests on flock(), so it does not hold on a file system that has no such locks.
//
// One call at a time runs in a process, and a fork waits for it; a call waits for the writers of
// other processes.
extern "C" __attribute__((visibility("default"))) int alWrite(
    const char* file, unsigned int line, LibLoggerSettings* settings, const char* moduleName,
    const char* reserved, unsigned int code, int level, const char* message);
