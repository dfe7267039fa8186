// Appending under the log file's own lock. Nothing stays open or locked between two lines, so
// processes come, go, fork and die as they like, and any of them may begin a new file.
#include "plugins/zopmekLogger/LogFile.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <system_error>
#include <utility>

namespace {

// Each attempt that finds the file replaced means that another writer got a line through. So many
// in a row mean that the file's identity cannot be told here, and a logger must not hang.
constexpr int MOST_ATTEMPTS = 100000;

[[noreturn]] void Fail(int error) {
    throw std::system_error(error, std::generic_category());
}

template <typename Call>
auto Uninterrupted(Call call) {
    auto result = call();
    while (result < 0 && errno == EINTR) {
        result = call();
    }
    return result;
}

// Owns the descriptor of an open log file and holds the file's lock.
class LockedFile {
public:
    explicit LockedFile(int descriptor) : m_descriptor(descriptor) {
        if (Uninterrupted([&] { return flock(m_descriptor, LOCK_EX); }) != 0 ||
            fstat(m_descriptor, &m_status) != 0) {
            const int error = errno;
            close(m_descriptor);
            Fail(error);
        }
    }
    ~LockedFile() {
        // Closing is not enough: a process that was forked meanwhile has a copy of the descriptor,
        // and the lock would last until that is closed too.
        flock(m_descriptor, LOCK_UN);
        close(m_descriptor);
    }
    LockedFile(const LockedFile&) = delete;
    LockedFile& operator=(const LockedFile&) = delete;

    const struct stat& Status() const { return m_status; }
    uint64_t Size() const { return static_cast<uint64_t>(m_status.st_size); }

    // Whether the last line lacks its end, because its writer was killed.
    bool EndsInsideLine() const {
        char last = '\0';
        return m_status.st_size > 0 &&
               (pread(m_descriptor, &last, 1, m_status.st_size - 1) != 1 || last != '\n');
    }

    // Appends all of the text or nothing.
    void Append(std::string_view text) const {
        while (!text.empty()) {
            const ssize_t written =
                Uninterrupted([&] { return write(m_descriptor, text.data(), text.size()); });
            if (written <= 0) {
                const int error = written < 0 ? errno : EIO;
                // When even this fails, the next writer sees a line without an end and copes.
                (void)!ftruncate(m_descriptor, m_status.st_size);
                Fail(error);
            }
            text.remove_prefix(static_cast<size_t>(written));
        }
    }

private:
    int m_descriptor;
    struct stat m_status {};
};

bool Exists(const std::string& path) {
    struct stat status {};
    return lstat(path.c_str(), &status) == 0;
}

void Rename(const std::string& from, const std::string& to) {
    if (rename(from.c_str(), to.c_str()) != 0) {
        Fail(errno);
    }
}

}  // namespace

LogFile::LogFile(std::string path, uint64_t sizeLimit, uint32_t fileCount, bool makeFolders)
    : m_path(std::move(path)),
      m_sizeLimit(sizeLimit),
      m_fileCount(std::max<uint64_t>(fileCount, 1)),
      m_makeFolders(makeFolders) {}

void LogFile::Append(std::string_view line) const {
    for (int attempt = 0; attempt < MOST_ATTEMPTS; ++attempt) {
        const LockedFile file(Open());
        if (!IsAt(file.Status().st_dev, file.Status().st_ino)) {
            continue;  // another writer began a new file while this one waited for the lock
        }
        if (!S_ISREG(file.Status().st_mode) && !S_ISCHR(file.Status().st_mode)) {
            Fail(EINVAL);  // a pipe would keep the line for nobody, or keep the caller waiting
        }
        std::string text(file.EndsInsideLine() ? "\n" : "");
        text += line;
        if (m_sizeLimit != 0 && file.Size() != 0 && file.Size() + text.size() > m_sizeLimit) {
            Rotate();
            continue;
        }
        file.Append(text);
        return;
    }
    Fail(EBUSY);
}

int LogFile::Open() const {
    const auto attempt = [&] {
        return open(m_path.c_str(), O_RDWR | O_APPEND | O_CREAT | O_CLOEXEC | O_NOCTTY, 0644);
    };
    int descriptor = Uninterrupted(attempt);
    if (descriptor < 0 && errno == ENOENT && m_makeFolders) {
        std::filesystem::create_directories(std::filesystem::path(m_path).parent_path());
        descriptor = Uninterrupted(attempt);
    }
    if (descriptor < 0) {
        Fail(errno);
    }
    return descriptor;
}

// Whether the file of this identity is still the one that bears the name.
bool LogFile::IsAt(uint64_t device, uint64_t inode) const {
    struct stat status {};
    return stat(m_path.c_str(), &status) == 0 && status.st_dev == device && status.st_ino == inode;
}

// Puts the full file aside; to be called by the holder of its lock only. The file's own name goes
// last: from that moment on another writer may begin, fill and put aside the next file.
void LogFile::Rotate() const {
    // Left over from a time when more files were kept.
    for (uint64_t number = m_fileCount; unlink(OlderPath(number).c_str()) == 0; ++number) {
    }
    if (m_fileCount == 1) {
        if (unlink(m_path.c_str()) != 0) {
            Fail(errno);
        }
        return;
    }
    // Only the files before the first gap move up, so a large count costs nothing, and a rotation
    // that was cut by a kill is taken up where it ended. Without a gap the oldest file is replaced.
    uint64_t number = 1;
    while (number < m_fileCount - 1 && Exists(OlderPath(number))) {
        ++number;
    }
    for (; number > 1; --number) {
        Rename(OlderPath(number - 1), OlderPath(number));
    }
    Rename(m_path, OlderPath(1));
}

std::string LogFile::OlderPath(uint64_t number) const {
    return m_path + "." + std::to_string(number);
}
