#include "CostCountCommon/src/platform/linux/TextFile.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "CostCountCommon/src/CancellationOff.h"
#include "CostCountCommon/src/FileDescriptor.h"

namespace platform {

bool ReadTextFile(const std::string& path, size_t limit, std::string* text) {
    const CancellationOff whole;
    text->clear();
    // O_NONBLOCK: a pipe without a writer must not hold us up.
    const FileDescriptor file = FileDescriptor::Open(path.c_str(), O_RDONLY | O_NONBLOCK);
    struct stat status {};
    if (!file.IsOpen() || fstat(file.Number(), &status) != 0) {
        return false;
    }
    if (!S_ISREG(status.st_mode)) {
        errno = EINVAL;
        return false;
    }
    char buffer[4096];
    while (text->size() <= limit) {
        const ssize_t size = read(file.Number(), buffer, sizeof buffer);
        if (size == 0) {
            return true;
        }
        if (size < 0 && errno != EINTR) {
            return false;
        }
        text->append(buffer, size < 0 ? 0 : static_cast<size_t>(size));
    }
    errno = EFBIG;
    return false;
}

}  // namespace platform
