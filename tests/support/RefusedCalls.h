// System calls that fail for a process, as on a disk that is broken or a file system that lacks
// them.
#pragma once

enum RefusedCalls : unsigned int { HARD_LINKS = 1, RENAMES = 2, FLUSHES = 4 };

// From now on such calls fail with `reason` in errno, for this process and the programs that it
// starts. False when the machine does not allow that. It cannot be taken back: for child processes.
[[nodiscard]] bool RefuseCalls(unsigned int calls, int reason);
