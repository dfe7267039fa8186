#include "host/common/LibraryOutput.h"

#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <memory>
#include <string>

#include "host/common/Errors.h"

namespace tallyquist {
namespace {

// A file without a name; without a place for one, the lines are lost, which is better than to fail.
FileDescriptor TemporaryFile() {
    // Where the system can, this file never has a name that a signal could leave behind.
    const std::unique_ptr<FILE, int (*)(FILE*)> nameless(std::tmpfile(), std::fclose);
    if (nameless != nullptr) {
        return FileDescriptor(fcntl(fileno(nameless.get()), F_DUPFD_CLOEXEC, 0));
    }
    const char* named = std::getenv("TMPDIR");
    std::string path = named != nullptr && *named != '\0' ? named : "/tmp";
    path.append("/tallyquist-XXXXXX");
    FileDescriptor file(mkostemp(path.data(), O_CLOEXEC));
    if (!file.IsOpen()) {
        return FileDescriptor::Open("/dev/null", O_RDWR);
    }
    unlink(path.c_str());
    return file;
}

// As far as it can be: this is an addition to a message.
void CopyToStandardError(int file) {
    std::array<char, 4096> buffer{};
    off_t at = 0;
    for (;;) {
        const ssize_t size = pread(file, buffer.data(), buffer.size(), at);
        if (size <= 0 || std::fwrite(buffer.data(), 1, static_cast<size_t>(size), stderr) == 0) {
            return;
        }
        at += size;
    }
}

}  // namespace

LibraryOutput::LibraryOutput()
    : m_exceptions(std::uncaught_exceptions()),
      m_standardOutput(fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 0)),
      m_lines(TemporaryFile()) {
    std::fflush(stdout);
    if (!m_standardOutput.IsOpen() || !m_lines.IsOpen() ||
        dup2(m_lines.Number(), STDOUT_FILENO) < 0) {
        throw CommandError(std::string("cannot set standard output aside: ") +
                           std::strerror(errno));
    }
}

LibraryOutput::~LibraryOutput() {
    std::fflush(stdout);
    dup2(m_standardOutput.Number(), STDOUT_FILENO);
    if (std::uncaught_exceptions() > m_exceptions) {
        CopyToStandardError(m_lines.Number());
    }
}

}  // namespace tallyquist
