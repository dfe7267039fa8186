#include "host/settings/FolderLock.h"

#include <sys/file.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <system_error>

#include "host/common/Errors.h"
#include "host/common/Printable.h"

namespace tallyquist {

FolderLock::FolderLock(const std::string& folder) {
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (error) {
        throw CommandError("cannot create " + Visible(folder) + ": " + error.message());
    }
    m_folder = FileDescriptor::Open(folder.c_str(), O_RDONLY | O_DIRECTORY);
    bool isLocked = false;
    do {
        isLocked = m_folder.IsOpen() && flock(m_folder.Number(), LOCK_EX) == 0;
    } while (!isLocked && errno == EINTR);
    if (!isLocked) {
        throw CommandError("cannot lock " + Visible(folder) + ": " + std::strerror(errno));
    }
}

}  // namespace tallyquist
