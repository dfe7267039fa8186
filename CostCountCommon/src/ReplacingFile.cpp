#include "CostCountCommon/src/ReplacingFile.h"

#include <sys/stat.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <system_error>
#include <utility>

namespace {

namespace fs = std::filesystem;

std::string FolderOf(const std::string& path) {
    const fs::path folder = fs::path(path).parent_path();
    return folder.empty() ? "." : folder.string();
}

// Also to a file that does not exist yet.
bool FollowLinks(std::string* path) {
    constexpr int MOST = 40;  // as many as the system follows
    std::error_code error;
    for (int links = 0; fs::is_symlink(fs::symlink_status(*path, error)); ++links) {
        if (links == MOST) {
            errno = ELOOP;
            return false;
        }
        const fs::path next = fs::read_symlink(*path, error);
        if (error) {
            errno = error.value();
            return false;
        }
        *path = (fs::path(*path).parent_path() / next).string();
    }
    return true;
}

// Unlike rename, a hard link never replaces a file that appeared in the meantime.
bool PlaceExclusively(const char* temporary, const char* target) {
    if (linkat(AT_FDCWD, temporary, AT_FDCWD, target, 0) == 0) {
        unlink(temporary);
        return true;
    }
    if (errno == EEXIST) {
        return false;
    }
    // File systems without hard links have several ways to say so. There the name is taken by an
    // empty file first, which a process that is killed just now leaves.
    if (!FileDescriptor::Open(target, O_WRONLY | O_CREAT | O_EXCL, S_IRUSR | S_IWUSR).IsOpen()) {
        return false;
    }
    if (std::rename(temporary, target) != 0) {
        const int reason = errno;
        unlink(target);
        errno = reason;
        return false;
    }
    return true;
}

}  // namespace

ReplacingFile::~ReplacingFile() {
    if (!m_temporary.empty()) {
        const CancellationOff whole;
        const int earlier = errno;
        unlink(m_temporary.c_str());
        errno = earlier;
    }
}

bool ReplacingFile::Create(const std::string& target, Placement placement) {
    if (target.empty()) {
        errno = ENOENT;
        return false;
    }
    // Commit finds out for good; this spares the caller the writing.
    struct stat existing {};
    if (placement == Placement::EXCLUSIVE && lstat(target.c_str(), &existing) == 0) {
        errno = EEXIST;
        return false;
    }
    m_target = target;
    m_placement = placement;
    if (placement == Placement::REPLACE && !FollowLinks(&m_target)) {
        return false;
    }
    std::string pattern = FolderOf(m_target).append("/.tallyquist-XXXXXX");
    const CancellationOff whole;
    m_file = FileDescriptor(mkostemp(pattern.data(), O_CLOEXEC));
    if (m_file.IsOpen()) {
        m_temporary = std::move(pattern);
    }
    return m_file.IsOpen();
}

bool ReplacingFile::Write(const char* data, size_t size) {
    return WriteWhole(m_file.Number(), data, size);
}

bool ReplacingFile::Flush() {
    while (fsync(m_file.Number()) != 0) {
        if (errno != EINTR) {
            return false;
        }
    }
    return true;
}

bool ReplacingFile::Place() {
    return m_placement == Placement::REPLACE
               ? std::rename(m_temporary.c_str(), m_target.c_str()) == 0
               : PlaceExclusively(m_temporary.c_str(), m_target.c_str());
}

bool ReplacingFile::Commit() {
    // Before the file has its name: afterwards memory must not run out any more.
    const std::string folderName = FolderOf(m_target);
    if (!Flush()) {
        return false;
    }
    const CancellationOff whole;
    if (!Place()) {
        return false;
    }
    m_temporary.clear();
    // Makes the new name durable. A folder that cannot be read, or a file system that cannot do so,
    // still has the whole file.
    const FileDescriptor folder = FileDescriptor::Open(folderName.c_str(), O_RDONLY | O_DIRECTORY);
    if (folder.IsOpen()) {
        fsync(folder.Number());
    }
    return true;
}
