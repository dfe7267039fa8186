// An open file descriptor that is closed with its owner.
#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <utility>

#include "CostCountCommon/src/CancellationOff.h"

// Opening and closing are no cancellation points. Closing keeps errno, so that the reason of a
// failure survives the way out.
class FileDescriptor {
public:
    FileDescriptor() = default;
    // A negative number is none.
    explicit FileDescriptor(int number) : m_number(number) {}
    ~FileDescriptor() { Close(); }
    FileDescriptor(FileDescriptor&& other) noexcept : m_number(std::exchange(other.m_number, -1)) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept {
        if (this != &other) {
            Close();
            m_number = std::exchange(other.m_number, -1);
        }
        return *this;
    }

    // O_CLOEXEC and O_NOCTTY are added to the flags of open. None, with errno, on failure.
    static FileDescriptor Open(const char* path, int flags, mode_t mode = 0) {
        const CancellationOff whole;
        return FileDescriptor(open(path, flags | O_CLOEXEC | O_NOCTTY, mode));
    }

    int Number() const { return m_number; }
    bool IsOpen() const { return m_number >= 0; }

    void Close() {
        if (m_number >= 0) {
            const CancellationOff whole;
            const int earlier = errno;
            close(std::exchange(m_number, -1));
            errno = earlier;
        }
    }

private:
    int m_number = -1;
};

// Writes all of it at the descriptor's offset; false with errno on failure. A cancellation point.
[[nodiscard]] inline bool WriteWhole(int file, const char* data, size_t size) {
    while (size > 0) {
        const ssize_t written = write(file, data, size);
        if (written < 0 && errno != EINTR) {
            return false;
        }
        const size_t taken = written < 0 ? 0 : static_cast<size_t>(written);
        data += taken;
        size -= taken;
    }
    return true;
}
