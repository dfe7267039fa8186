// Keeps what the library prints out of a command's result.
#pragma once

#include "CostCountCommon/src/FileDescriptor.h"

namespace tallyquist {

// The library prints its diagnostics on standard output, some of them in normal cases. While an
// object lives, that goes to a file of its own; when an exception ends the scope, the lines follow
// on standard error, else they are gone. Standard output belongs to the process: one object at a
// time, and only the thread that has it prints. Throws CommandError.
class LibraryOutput {
public:
    LibraryOutput();
    ~LibraryOutput();
    LibraryOutput(const LibraryOutput&) = delete;
    LibraryOutput& operator=(const LibraryOutput&) = delete;

private:
    int m_exceptions;
    FileDescriptor m_standardOutput;
    FileDescriptor m_lines;
};

}  // namespace tallyquist
