#include "host/settings/FolderLock.h"

#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <system_error>

#include "host/common/Errors.h"
#include "host/common/Printable.h"
#include "host/settings/Leftovers.h"

namespace tallyquist {

namespace {

// Somebody may hold the lock and never give it back: a stopped program, or another user.
constexpr int PATIENCE_MILLISECONDS = 30000;
constexpr int NOTICE_MILLISECONDS = 1000;
constexpr int RETRY_MILLISECONDS = 20;

// Folders of a user's data are that user's alone.
void CreateFolders(const std::string& folder) {
    const mode_t earlier = umask(S_IRWXG | S_IRWXO);
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    umask(earlier);
    if (error) {
        throw CommandError("cannot create " + Visible(folder) + ": " + error.message());
    }
}

}  // namespace

FolderLock::FolderLock(const std::string& folder) {
    CreateFolders(folder);
    m_folder = FileDescriptor::Open(folder.c_str(), O_RDONLY | O_DIRECTORY);
    for (int waited = 0; waited < PATIENCE_MILLISECONDS; waited += RETRY_MILLISECONDS) {
        if (m_folder.IsOpen() && flock(m_folder.Number(), LOCK_EX | LOCK_NB) == 0) {
            RemoveLeftovers(folder);
            return;
        }
        if (errno != EWOULDBLOCK && errno != EINTR) {
            throw CommandError("cannot lock " + Visible(folder) + ": " + std::strerror(errno));
        }
        if (waited == NOTICE_MILLISECONDS) {
            std::fprintf(stderr, "tallyquist: another program changes %s; waiting for it\n",
                         Visible(folder).c_str());
        }
        usleep(RETRY_MILLISECONDS * 1000);
    }
    throw CommandError("another program keeps " + Visible(folder) + " locked");
}

}  // namespace tallyquist
