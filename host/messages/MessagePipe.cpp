#include "host/messages/MessagePipe.h"

#include <poll.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstring>

#include "CostCountCommon/src/FileDescriptor.h"
#include "host/common/Errors.h"
#include "host/common/Printable.h"

namespace tallyquist {
namespace {

using Clock = std::chrono::steady_clock;

[[noreturn]] void Fail(const std::string& path, const std::string& reason) {
    throw CommandError(Visible(path).append(": ").append(reason));
}

void RequirePipe(const std::string& path, int statResult, const struct stat& status) {
    if (statResult != 0) {
        Fail(path, std::string(std::strerror(errno)) +
                       (errno == ENOENT ? " (whoever reads the pipe makes it, with mkfifo)" : ""));
    }
    if (!S_ISFIFO(status.st_mode)) {
        Fail(path, "is not a pipe");
    }
}

FileDescriptor OpenPipe(const std::string& path) {
    struct stat status {};
    // Looked at before, because opening a device may already do something.
    RequirePipe(path, stat(path.c_str(), &status), status);
    FileDescriptor pipe = FileDescriptor::Open(path.c_str(), O_WRONLY | O_NONBLOCK);
    if (!pipe.IsOpen()) {
        Fail(path, errno == ENXIO ? "nobody reads it" : std::strerror(errno));
    }
    RequirePipe(path, fstat(pipe.Number(), &status), status);
    return pipe;
}

// Waits until the reader made room or went away. False when it is too late.
bool WaitForReader(const FileDescriptor& pipe, Clock::time_point end) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now()).count();
    pollfd room{pipe.Number(), POLLOUT, 0};
    return left > 0 && poll(&room, 1, static_cast<int>(left)) != 0;
}

}  // namespace

void SendMessage(const std::string& path, std::string_view message, std::chrono::seconds patience) {
    const FileDescriptor pipe = OpenPipe(path);
    size_t sent = 0;
    const auto fail = [&](const std::string& reason) {
        Fail(path, std::to_string(sent) + " of " + std::to_string(message.size()) +
                       " bytes were sent: " + reason);
    };
    auto end = Clock::now() + patience;
    while (sent < message.size()) {
        const ssize_t written = write(pipe.Number(), message.data() + sent, message.size() - sent);
        if (written > 0) {
            sent += static_cast<size_t>(written);
            end = Clock::now() + patience;
        } else if (errno == EPIPE) {
            fail("the reader went away");
        } else if (errno != EAGAIN && errno != EINTR) {
            fail(std::strerror(errno));
        } else if (!WaitForReader(pipe, end)) {
            fail("nobody has read for " + std::to_string(patience.count()) + " s");
        }
    }
}

}  // namespace tallyquist
