// Copies files with all that belongs to them.
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <vector>

#include "CostCountCommon/src/FileDescriptor.h"
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

bool CopyData(int from, int to) {
    CopyInKernel(from, to);
    std::vector<char> buffer(1 << 17);
    for (;;) {
        const ssize_t size = read(from, buffer.data(), buffer.size());
        if (size == 0) {
            return true;
        }
        if (size < 0 ? errno != EINTR : !WriteWhole(to, buffer.data(), static_cast<size_t>(size))) {
            return false;
        }
    }
}

}  // namespace

bool CopyOpenFile(int from, int to) {
    struct stat status {};  // before the data is read, which changes the time of the last access
    return fstat(from, &status) == 0 && CopyData(from, to) && CopyAttributes(from, status, to);
}

}  // namespace platform
