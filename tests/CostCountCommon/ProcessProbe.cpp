// Usage: process_probe ARGUMENT. Writes how it was started into the file that PROBE_OUTPUT names:
// the number of arguments, then how many descriptors beyond the standard streams are open and how
// many signals are blocked or ignored, then the argument. Ends as the argument says: "exit N", "end
// by signal", "wait" or "wait as USER" (a number) for ever, "linger" for a moment and exit with 3;
// else with 0.
#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <string>

namespace {

int OpenDescriptors() {
    int count = 0;
    for (int descriptor = STDERR_FILENO + 1; descriptor < 1024; ++descriptor) {
        count += fcntl(descriptor, F_GETFD) >= 0 ? 1 : 0;
    }
    return count;
}

int SuppressedSignals() {
    sigset_t blocked;
    sigprocmask(SIG_SETMASK, nullptr, &blocked);
    int count = 0;
    for (const int signal : {SIGTERM, SIGPIPE, SIGXFSZ, SIGCHLD}) {
        struct sigaction action {};
        sigaction(signal, nullptr, &action);
        count += sigismember(&blocked, signal) != 0 || action.sa_handler == SIG_IGN ? 1 : 0;
    }
    return count;
}

}  // namespace

int main(int argc, char** argv) {
    const int descriptors = OpenDescriptors();
    const std::string argument = argc > 1 ? argv[1] : "";
    if (const char* path = std::getenv("PROBE_OUTPUT")) {
        std::ofstream output(path, std::ios::binary);
        if (argument.starts_with("wait as ") &&
            setuid(static_cast<uid_t>(std::atoi(argument.c_str() + 8))) != 0) {
            return 1;
        }
        output << argc - 1 << ' ' << descriptors << ' ' << SuppressedSignals() << '\n' << argument;
    }
    if (argument == "end by signal") {
        raise(SIGKILL);
    } else if (argument == "linger") {
        usleep(100000);
        return 3;
    }
    while (argument.starts_with("wait")) {
        pause();
    }
    return argument.starts_with("exit ") ? std::atoi(argument.c_str() + 5) : 0;
}
