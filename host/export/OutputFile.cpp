#include "host/export/OutputFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <system_error>
#include <vector>

#include "host/export/Errors.h"

namespace tallyquist {
namespace {

namespace fs = std::filesystem;

class Descriptor {
public:
    explicit Descriptor(int number) : m_number(number) {}
    ~Descriptor() {
        if (m_number >= 0) {
            close(m_number);
        }
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    int Number() const { return m_number; }
    bool IsOpen() const { return m_number >= 0; }

private:
    int m_number;
};

fs::path FolderOf(const fs::path& path) {
    return path.has_parent_path() ? path.parent_path() : fs::path(".");
}

// The mode that a new file would get from the process's mask, or the one of the file to be
// replaced.
mode_t ModeFor(const std::string& target) {
    struct stat existing {};
    if (!target.empty() && stat(target.c_str(), &existing) == 0) {
        return existing.st_mode & 07777;
    }
    const mode_t mask = umask(0);
    umask(mask);
    return 0666 & ~mask;
}

// Names are limited to 255 bytes; the rest is the dot, the random part and the endings.
std::string TemporaryPattern(const fs::path& folder, const std::string& name) {
    std::string hidden = ".";
    hidden.append(name, 0, 200).append(".tallyquist-XXXXXX.part");
    return (folder / hidden).string();
}

bool WriteAll(int descriptor, const char* data, size_t size) {
    while (size > 0) {
        const ssize_t written = write(descriptor, data, size);
        if (written < 0 && errno != EINTR) {
            return false;
        }
        const size_t taken = written < 0 ? 0 : static_cast<size_t>(written);
        data += taken;
        size -= taken;
    }
    return true;
}

}  // namespace

OutputFile::OutputFile(const std::string& target, bool replace)
    : m_shownAs(target == "-" ? "standard output" : target), m_replace(replace) {
    if (target != "-") {
        m_target = target;
        CheckTarget(replace);
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

void OutputFile::CheckTarget(bool replace) {
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
    if (!replace) {
        throw CommandError(m_shownAs + " exists already; --force replaces it");
    }
    const fs::path resolved = fs::canonical(m_target, error);
    if (!error) {
        m_target = resolved.string();
    }
}

const std::string& OutputFile::CreateTemporary() {
    std::error_code error;
    const fs::path target(m_target);
    std::string pattern = m_target.empty()
                              ? TemporaryPattern(fs::temp_directory_path(error), "output")
                              : TemporaryPattern(FolderOf(target), target.filename().string());
    const Descriptor file(mkstemps(pattern.data(), static_cast<int>(std::strlen(".part"))));
    if (!file.IsOpen()) {
        Fail(errno);
    }
    m_temporary = pattern;
    m_removal = std::make_unique<RemoveOnSignal>(m_temporary);
    // What goes to standard output stays readable to this user alone on its way.
    if (!m_target.empty() && fchmod(file.Number(), ModeFor(m_target)) != 0) {
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
    const Descriptor file(open(m_temporary.c_str(), O_RDONLY | O_CLOEXEC));
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
    } else if (errno == EEXIST || rename(m_temporary.c_str(), m_target.c_str()) != 0) {
        Fail(errno);
    }
    // Makes the new name durable; a file system that cannot do so still has the whole file.
    const Descriptor folder(open(FolderOf(m_target).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (folder.IsOpen()) {
        fsync(folder.Number());
    }
}

void OutputFile::CopyToStandardOutput() {
    const Descriptor file(open(m_temporary.c_str(), O_RDONLY | O_CLOEXEC));
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
        if (size < 0 ? errno != EINTR
                     : !WriteAll(STDOUT_FILENO, buffer.data(), static_cast<size_t>(size))) {
            Fail(errno);
        }
    }
}

}  // namespace tallyquist
