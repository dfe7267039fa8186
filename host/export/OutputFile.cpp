#include "host/export/OutputFile.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <system_error>
#include <vector>

#include "CostCountCommon/src/FileDescriptor.h"
#include "host/common/Errors.h"
#include "host/common/Printable.h"
#include "host/common/StandardOutput.h"

namespace tallyquist {
namespace {

namespace fs = std::filesystem;

fs::path FolderOf(const fs::path& path) {
    return path.has_parent_path() ? path.parent_path() : fs::path(".");
}

// Gives the file the mode that a new one would get from the process's mask, or the permissions and,
// where that is allowed, the owner of the file that it is to replace.
bool TakeAttributes(int descriptor, const std::string& target) {
    struct stat existing {};
    if (stat(target.c_str(), &existing) == 0) {
        // Only a privileged process may give a file away; others own what they replace in most
        // cases.
        [[maybe_unused]] const int ignored = fchown(descriptor, existing.st_uid, existing.st_gid);
        return fchmod(descriptor, existing.st_mode & 0777) == 0;
    }
    const mode_t mask = umask(0);
    umask(mask);
    return fchmod(descriptor, 0666 & ~mask) == 0;
}

// As the system's own programs take it; one that does not exist is reported when a file is made in
// it.
fs::path TemporaryFolder() {
    const char* named = std::getenv("TMPDIR");
    return named != nullptr && *named != '\0' ? named : "/tmp";
}

// Names are limited to 255 bytes; the rest is the dot, the random part and the endings.
std::string TemporaryPattern(const fs::path& folder, const std::string& name) {
    std::string hidden = ".";
    hidden.append(name, 0, 200).append(".tallyquist-XXXXXX.part");
    return (folder / hidden).string();
}

}  // namespace

OutputFile::OutputFile(const std::string& target, bool replace)
    : m_shownAs(target == "-" ? "standard output" : Visible(target)), m_replace(replace) {
    if (target != "-") {
        m_target = target;
        CheckTarget();
    }
}

OutputFile::~OutputFile() {
    if (!m_temporary.empty()) {
        unlink(m_temporary.c_str());
    }
}

void OutputFile::Fail(int error) const {
    throw CommandError("cannot write " + m_shownAs + ": " + std::strerror(error));
}

// Also to a file that does not exist yet.
void OutputFile::FollowLinks() {
    constexpr int MOST = 40;  // as many as the system follows
    std::error_code error;
    for (int links = 0; fs::is_symlink(m_target, error); ++links) {
        if (links == MOST) {
            Fail(ELOOP);
        }
        m_target = (FolderOf(m_target) / fs::read_symlink(m_target, error)).string();
    }
}

void OutputFile::FailAsExisting() const {
    throw CommandError(m_shownAs + " exists already; --force replaces it");
}

void OutputFile::CheckTarget() {
    FollowLinks();
    std::error_code error;
    const fs::file_status status = fs::status(m_target, error);
    if (!fs::exists(status)) {
        if (m_target.empty() || !fs::exists(FolderOf(m_target), error)) {
            Fail(ENOENT);
        }
        return;
    }
    if (fs::is_directory(status)) {
        Fail(EISDIR);
    }
    if (!fs::is_regular_file(status)) {
        throw CommandError("cannot write " + m_shownAs +
                           ": it is not a regular file; -o - writes to standard output");
    }
    if (!m_replace) {
        FailAsExisting();
    }
}

const std::string& OutputFile::CreateTemporary() {
    const fs::path target(m_target);
    const fs::path folder = m_target.empty() ? TemporaryFolder() : FolderOf(target);
    std::string pattern =
        TemporaryPattern(folder, m_target.empty() ? "output" : target.filename().string());
    const FileDescriptor file(
        mkostemps(pattern.data(), static_cast<int>(std::strlen(".part")), O_CLOEXEC));
    if (!file.IsOpen()) {
        throw CommandError("cannot write a file in " + Visible(folder.string()) + ": " +
                           std::strerror(errno));
    }
    m_temporary = pattern;
    m_removal = std::make_unique<RemoveOnSignal>(m_temporary);
    // What goes to standard output stays readable to this user alone on its way.
    if (!m_target.empty() && !TakeAttributes(file.Number(), m_target)) {
        Fail(errno);
    }
    return m_temporary;
}

void OutputFile::Commit() {
    if (m_target.empty()) {
        CopyToStandardOutput();
    } else {
        Rename();
    }
    m_temporary.clear();
    m_removal.reset();
}

void OutputFile::Rename() {
    const FileDescriptor file = FileDescriptor::Open(m_temporary.c_str(), O_RDONLY);
    if (!file.IsOpen() || fsync(file.Number()) != 0) {
        Fail(errno);
    }
    if (m_replace) {
        if (rename(m_temporary.c_str(), m_target.c_str()) != 0) {
            Fail(errno);
        }
    } else if (link(m_temporary.c_str(), m_target.c_str()) == 0) {
        // Unlike rename, link never replaces a file that appeared in the meantime.
        unlink(m_temporary.c_str());
    } else if (errno == EEXIST) {
        FailAsExisting();
    } else if (rename(m_temporary.c_str(), m_target.c_str()) != 0) {
        Fail(errno);  // for a file system without links, which has nothing better
    }
    // Makes the new name durable; a file system that cannot do so still has the whole file.
    const FileDescriptor folder =
        FileDescriptor::Open(FolderOf(m_target).c_str(), O_RDONLY | O_DIRECTORY);
    if (folder.IsOpen()) {
        fsync(folder.Number());
    }
}

void OutputFile::CopyToStandardOutput() {
    const FileDescriptor file = FileDescriptor::Open(m_temporary.c_str(), O_RDONLY);
    if (!file.IsOpen()) {
        Fail(errno);
    }
    unlink(m_temporary.c_str());
    std::vector<char> buffer(1 << 16);
    for (;;) {
        const ssize_t size = read(file.Number(), buffer.data(), buffer.size());
        if (size == 0) {
            return;
        }
        if (size > 0) {
            WriteStandardOutput({buffer.data(), static_cast<size_t>(size)});
        } else if (errno != EINTR) {
            Fail(errno);
        }
    }
}

}  // namespace tallyquist
