// A file that appears under its name only when it is whole.
#pragma once

#include <cstddef>
#include <string>

#include "CostCountCommon/src/FileDescriptor.h"

// The bytes go to a temporary file ".tallyquist-XXXXXX" beside the target, so that it lies on the
// same disk; its name is short, so that a target may have the longest one. Commit gives it the
// target's name. A process that is killed before leaves the temporary file, and the target as it
// was.
//
// Functions that return bool give false with the reason in errno. A thread that is cancelled leaves
// nothing behind. An object serves one thread at a time.
class ReplacingFile {
public:
    enum class Placement {
        REPLACE,    // takes the place of an existing target; a symbolic link is followed
        EXCLUSIVE,  // fails with EEXIST for whatever lies there, also a link that leads nowhere
    };

    ReplacingFile() = default;
    // Removes the temporary file unless it was committed.
    ~ReplacingFile();
    ReplacingFile(const ReplacingFile&) = delete;
    ReplacingFile& operator=(const ReplacingFile&) = delete;

    // Makes the temporary file, with mode 0600. To be called once. What kind of file an existing
    // target is, and whether it may be written, is the caller's question: only the folder must
    // allow it.
    [[nodiscard]] bool Create(const std::string& target, Placement placement);

    // Owned by this object; -1 before Create.
    int Descriptor() const { return m_file.Number(); }

    // Writes at the descriptor's offset. A cancellation point.
    [[nodiscard]] bool Write(const char* data, size_t size);

    // Flushes the file to the disk, which is a cancellation point, and gives it the target's name.
    // Afterwards there is nothing left to fail or to remove.
    [[nodiscard]] bool Commit();

private:
    bool Flush();
    bool Place();

    FileDescriptor m_file;
    std::string m_target;
    std::string m_temporary;  // empty when there is none to remove
    Placement m_placement = Placement::REPLACE;
};
