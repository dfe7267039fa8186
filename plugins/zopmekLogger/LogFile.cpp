// Appending under the log file's own lock. Nothing stays open or locked between two lines, so
// processes may come, go and die at any time, and any of them may begin a new file.
#include "plugins/zopmekLogger/LogFile.h"

#include <fcntl.h>
#include <pthread.h>
#include <signal.h>
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

// An attempt that finds the file replaced means, as a rule, that another writer is making progress.
// So many in a row mean that the file's identity cannot be told here, and a logger must not hang.
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

// A write beyond the process's limit on the size of files raises SIGXFSZ, whose default action ends
// the process. This holds the signal back from the calling thread and, when the thread's own write
// raised it, takes it away again. One that was pending before stays so.
class SizeSignalGuard {
public:
    SizeSignalGuard() {
        sigemptyset(&m_signals);
        sigaddset(&m_signals, SIGXFSZ);
        pthread_sigmask(SIG_BLOCK, &m_signals, &m_earlierMask);
        m_wasPending = IsPending();
    }
    ~SizeSignalGuard() {
        int signal = 0;
        // Not every write that is too large raises the signal, and waiting for one would hang.
        if (m_tooLarge && !m_wasPending && IsPending()) {
            sigwait(&m_signals, &signal);
        }
        pthread_sigmask(SIG_SETMASK, &m_earlierMask, nullptr);
    }
    SizeSignalGuard(const SizeSignalGuard&) = delete;
    SizeSignalGuard& operator=(const SizeSignalGuard&) = delete;

    void OnWriteError(int error) { m_tooLarge = m_tooLarge || error == EFBIG; }

private:
    static bool IsPending() {
        sigset_t pending;
        return sigpending(&pending) == 0 && sigismember(&pending, SIGXFSZ) == 1;
    }

    sigset_t m_signals{};
    sigset_t m_earlierMask{};
    bool m_wasPending = false;
    bool m_tooLarge = false;
};

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
        // Closing is not enough: a process that was made meanwhile without waiting for the ForkLock
        // has a copy of the descriptor, and the lock would last until that is closed too.
        flock(m_descriptor, LOCK_UN);
        close(m_descriptor);
    }
    LockedFile(const LockedFile&) = delete;
    LockedFile& operator=(const LockedFile&) = delete;

    mode_t Mode() const { return m_status.st_mode; }
    uint64_t Size() const { return static_cast<uint64_t>(m_status.st_size); }

    // Whether the file is still the one that bears the name.
    bool IsAt(const std::string& path) const {
        struct stat status {};
        return stat(path.c_str(), &status) == 0 && status.st_dev == m_status.st_dev &&
               status.st_ino == m_status.st_ino;
    }

    // Whether the last line lacks its end, as when its writer was killed, or cannot be read.
    bool EndsInsideLine() const {
        char last = '\0';
        return m_status.st_size > 0 &&
               (pread(m_descriptor, &last, 1, m_status.st_size - 1) != 1 || last != '\n');
    }

    // Appends all of the text, or throws and undoes what it can.
    void Append(std::string_view text) const {
        SizeSignalGuard guard;
        while (!text.empty()) {
            const ssize_t written =
                Uninterrupted([&] { return write(m_descriptor, text.data(), text.size()); });
            if (written <= 0) {
                const int error = written < 0 ? errno : EIO;
                guard.OnWriteError(error);
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
        if (!file.IsAt(m_path)) {
            continue;  // another writer began a new file while this one waited for the lock
        }
        if (!S_ISREG(file.Mode()) && !S_ISCHR(file.Mode())) {
            Fail(EINVAL);  // a pipe would keep the line for nobody, or keep the caller waiting
        }
        std::string text(file.EndsInsideLine() ? "\n" : "");
        text += line;
        if (m_sizeLimit != 0 && file.Size() != 0 && file.Size() + text.size() > m_sizeLimit) {
            const std::string path = std::filesystem::canonical(m_path).string();
            if (file.IsAt(path)) {  // else somebody changed a link on the way
                Rotate(path);
            }
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

// Puts the full file aside, whose path holds no link; to be called by the holder of its lock only.
// The file's own name goes last: from that moment on another writer may begin, fill and put aside
// the next file.
void LogFile::Rotate(const std::string& path) const {
    const auto olderPath = [&](uint64_t number) { return path + "." + std::to_string(number); };
    // Left over from a time when more files were kept, up to the first gap.
    for (uint64_t number = m_fileCount; unlink(olderPath(number).c_str()) == 0; ++number) {
    }
    if (m_fileCount == 1) {
        if (unlink(path.c_str()) != 0) {
            Fail(errno);
        }
        return;
    }
    // Only the files before the first gap move up, so the cost depends on the files that are there,
    // not on the count, and a rotation that was cut by a kill is taken up where it ended. Without a
    // gap the oldest file is replaced.
    uint64_t number = 1;
    while (number < m_fileCount - 1 && Exists(olderPath(number))) {
        ++number;
    }
    for (; number > 1; --number) {
        Rename(olderPath(number - 1), olderPath(number));
    }
    Rename(path, olderPath(1));
}
