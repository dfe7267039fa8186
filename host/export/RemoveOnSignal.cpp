#include "host/export/RemoveOnSignal.h"

#include <unistd.h>

#include <csignal>
#include <cstring>

namespace tallyquist {
namespace {

constexpr int SIGNALS[] = {SIGHUP, SIGINT, SIGQUIT, SIGTERM, SIGALRM, SIGUSR1, SIGUSR2};

// A handler may touch little but plain memory.
char gPath[4096];

void Remove(int signal) {
    unlink(gPath);
    // The action was reset on entry, so this ends the process as if nobody had listened.
    raise(signal);
}

void SetAction(void (*handler)(int), unsigned flags) {
    struct sigaction action {};
    action.sa_handler = handler;
    action.sa_flags = static_cast<int>(flags);
    for (const int signal : SIGNALS) {
        struct sigaction earlier {};
        // What the parent chose to ignore (nohup) stays ignored.
        if (sigaction(signal, nullptr, &earlier) == 0 && earlier.sa_handler != SIG_IGN) {
            sigaction(signal, &action, nullptr);
        }
    }
}

}  // namespace

RemoveOnSignal::RemoveOnSignal(const std::string& path) {
    if (path.size() < sizeof gPath) {
        std::memcpy(gPath, path.c_str(), path.size() + 1);
        SetAction(Remove, SA_RESETHAND);
    }
}

RemoveOnSignal::~RemoveOnSignal() {
    SetAction(SIG_DFL, 0);
}

}  // namespace tallyquist
