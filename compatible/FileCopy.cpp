#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <exception>

#include "CostCountCommon/src/FileDescriptor.h"
#include "CostCountCommon/src/ReplacingFile.h"
#include "CostCountCommon/src/platform/Platform.h"
#include "compatible/osFree.h"

namespace {

enum class Target { USABLE, SOURCE_ITSELF, UNUSABLE };

// Replacing a file takes no right to write it, but a copy over a file that is protected against
// writing must fail all the same, and devices and pipes must never be replaced.
Target ExamineTarget(const char* path, const struct stat& source) {
    struct stat existing {};
    if (stat(path, &existing) != 0) {
        return errno == ENOENT ? Target::USABLE : Target::UNUSABLE;
    }
    if (existing.st_dev == source.st_dev && existing.st_ino == source.st_ino) {
        return Target::SOURCE_ITSELF;
    }
    return S_ISREG(existing.st_mode) && faccessat(AT_FDCWD, path, W_OK, AT_EACCESS) == 0
               ? Target::USABLE
               : Target::UNUSABLE;
}

// The target appears whole or not at all.
bool CopyWholeFile(const char* from, const char* to, bool exclusive) {
    // O_NONBLOCK: a pipe without a writer must not hold us up.
    const FileDescriptor source = FileDescriptor::Open(from, O_RDONLY | O_NONBLOCK);
    struct stat status {};
    if (!source.IsOpen() || fstat(source.Number(), &status) != 0 || !S_ISREG(status.st_mode)) {
        return false;
    }
    const Target target = ExamineTarget(to, status);
    if (target == Target::SOURCE_ITSELF) {
        return !exclusive;
    }
    ReplacingFile copy;  // refuses an existing target of an exclusive copy itself
    return target != Target::UNUSABLE &&
           copy.Create(to, exclusive ? ReplacingFile::Placement::EXCLUSIVE
                                     : ReplacingFile::Placement::REPLACE) &&
           platform::CopyOpenFile(source.Number(), copy.Descriptor()) && copy.Commit();
}

}  // namespace

bool CopyFile(const char* from, const char* to, int failIfExists) try {
    return from != nullptr && to != nullptr && CopyWholeFile(from, to, failIfExists != 0);
} catch (const std::exception&) {
    return false;  // out of memory
}
