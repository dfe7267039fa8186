#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <vector>

#include "CostCountCommon/src/FileDescriptor.h"
#include "CostCountCommon/src/ReplacingFile.h"
#include "CostCountCommon/src/platform/Platform.h"
#include "CostCountCommon/src/platform/linux/FileAttributes.h"

namespace platform {
namespace {

// Lets the kernel copy what it can, from and at the descriptors' offsets. It cannot between all
// file systems, and for files that are made up as they are read it may tell of an end at once, so
// what remains is for the plain way, which also finds out the reason of a real failure.
void CopyInKernel(int from, int to) {
    constexpr size_t CHUNK = 1 << 24;  // a cancellation need not wait for longer
    ssize_t copied = 0;
    do {
        copied = copy_file_range(from, nullptr, to, nullptr, CHUNK, 0);
    } while (copied > 0 || (copied < 0 && errno == EINTR));
}

bool CopyData(int from, ReplacingFile* to) {
    CopyInKernel(from, to->Descriptor());
    std::vector<char> buffer(1 << 17);
    for (;;) {
        const ssize_t size = read(from, buffer.data(), buffer.size());
        if (size == 0) {
            return true;
        }
        if (size < 0 ? errno != EINTR : !to->Write(buffer.data(), static_cast<size_t>(size))) {
            return false;
        }
    }
}

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

}  // namespace

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
           CopyData(source.Number(), &copy) &&
           CopyAttributes(source.Number(), status, copy.Descriptor()) && copy.Commit();
}

}  // namespace platform
