// Turns at changing the files of a folder.
#pragma once

#include <string>

#include "CostCountCommon/src/FileDescriptor.h"

namespace tallyquist {

// Who reads a file, changes it and saves it under this lock loses no change of another who does.
// The lock is on the folder, because a save replaces the file; it is gone with the process that
// holds it, unlike the library's named locks.
class FolderLock {
public:
    // Makes the folder where it is missing, waits for the turn, half a minute at most, and clears
    // away what killed programs left there. Throws CommandError.
    explicit FolderLock(const std::string& folder);

private:
    FileDescriptor m_folder;
};

}  // namespace tallyquist
