#include "host/common/StandardOutput.h"

#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <string>

#include "host/common/Errors.h"

namespace tallyquist {

void WriteStandardOutput(std::string_view text) {
    std::signal(SIGPIPE, SIG_DFL);
    while (!text.empty()) {
        const ssize_t written = write(STDOUT_FILENO, text.data(), text.size());
        if (written >= 0) {
            text.remove_prefix(static_cast<size_t>(written));
        } else if (errno != EINTR) {
            throw CommandError(std::string("cannot write standard output: ") +
                               std::strerror(errno));
        }
    }
}

}  // namespace tallyquist
