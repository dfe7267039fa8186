#include <cstdio>

#include "compatible/osFree.h"

int vsprintf_s(char* dst, size_t size, const char* format, va_list arguments) {
    // The caller has started the list; the analyzer loses sight of that.
    // NOLINTNEXTLINE(clang-analyzer-valist.Uninitialized)
    return std::vsnprintf(dst, size, format, arguments);
}

int sprintf_s(char* dst, size_t size, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    const int length = vsprintf_s(dst, size, format, arguments);
    va_end(arguments);
    return length;
}
