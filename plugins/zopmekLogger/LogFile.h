// A log file that processes append to together, with its older files NAME.1, NAME.2 ...
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

class LogFile {
public:
    // `sizeLimit` is the most that one file holds, in bytes; 0 for no limit. `fileCount` is the
    // number of files kept, the current one included; 0 counts as 1. `makeFolders`: make the
    // folders above the file when they are missing. When `path` is a symbolic link, it stays one,
    // and the older files lie beside the file that it leads to.
    LogFile(std::string path, uint64_t sizeLimit, uint32_t fileCount, bool makeFolders);

    // Appends `line`, which ends with a line feed, and begins a new file first when the line would
    // take the present one beyond the limit. A line longer than the limit gets a file to itself.
    // Throws std::system_error when the line is not in the file; a part of it is then left there
    // only if the file cannot be cut back either. To be called with the ForkLock held.
    void Append(std::string_view line) const;

private:
    int Open() const;
    void Rotate(const std::string& path) const;

    std::string m_path;
    uint64_t m_sizeLimit;
    uint64_t m_fileCount;
    bool m_makeFolders;
};
