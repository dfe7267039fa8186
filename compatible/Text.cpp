#include <cstdio>

#include "compatible/osFree.h"

int vsprintf_s(char* dst, size_t size, const char* format, va_list arguments) {
    return std::vsnprintf(dst, size, format, arguments);
}

int sprintf_s(char* dst, size_t size, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    const int length = vsprintf_s(dst, size, format, arguments);
    va_end(arguments);
    return length;
}
