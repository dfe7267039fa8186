#include "CostCountCommon/xmlpxd/Print.h"

#include <cstdarg>
#include <cstdio>
#include <string_view>

void Print(const char* format, ...) {
    // Locked, so that lines of several threads do not mix.
    flockfile(stdout);
    va_list arguments;
    va_start(arguments, format);
    std::vprintf(format, arguments);
    va_end(arguments);
    if (!std::string_view(format).ends_with('\n')) {
        std::putchar('\n');
    }
    funlockfile(stdout);
}
