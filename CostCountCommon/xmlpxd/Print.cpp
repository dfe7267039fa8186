#include "CostCountCommon/xmlpxd/Print.h"

#include <pthread.h>

#include <cstdarg>
#include <cstdio>
#include <string_view>

namespace xmlpxd {
namespace {

void Unlock(void* stream) {
    funlockfile(static_cast<FILE*>(stream));
}

}  // namespace

void Print(const char* format, ...) {
    // Locked, so that lines of several threads do not mix; given back also when the thread is
    // cancelled while nobody reads the output.
    flockfile(stdout);
    pthread_cleanup_push(Unlock, stdout);
    va_list arguments;
    va_start(arguments, format);
    // The analyzer loses sight of the list.
    // NOLINTNEXTLINE(clang-analyzer-valist.Uninitialized)
    std::vprintf(format, arguments);
    va_end(arguments);
    if (!std::string_view(format).ends_with('\n')) {
        std::putchar('\n');
    }
    pthread_cleanup_pop(1);
}

}  // namespace xmlpxd
