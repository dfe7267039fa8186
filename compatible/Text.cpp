#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <exception>
#include <iterator>
#include <new>
#include <type_traits>

#include "compatible/ReplaceAll.h"
#include "compatible/osFree.h"

int strcpy_s(char* dst, size_t size, const char* src) {
    if (dst == nullptr) {
        return EINVAL;
    }
    const size_t length = src != nullptr ? strnlen(src, size) : size;
    if (length < size) {
        std::memcpy(dst, src, length + 1);
        return 0;
    }
    if (size > 0) {
        dst[0] = '\0';
    }
    return src == nullptr ? EINVAL : ERANGE;
}

int memcpy_s(void* dst, size_t size, const void* src, size_t count) {
    if (dst == nullptr) {
        return EINVAL;
    }
    if (src == nullptr || count > size) {
        std::memset(dst, 0, size);
        return src == nullptr ? EINVAL : ERANGE;
    }
    std::memcpy(dst, src, count);
    return 0;
}

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

int u_itoa(int value, char* dst, int radix) {
    if (dst == nullptr || radix != 10) {
        return EINVAL;
    }
    constexpr std::ptrdiff_t MOST_CHARACTERS = 7;
    char digits[12];
    const char* end = std::to_chars(std::begin(digits), std::end(digits), value).ptr;
    *std::copy_n(digits, std::min(end - digits, MOST_CHARACTERS), dst) = '\0';
    return 0;
}

void strReplace(std::string& text, const std::string& from, const std::string& to) try {
    ReplaceAll(text, from, to);
} catch (const std::exception&) {
    return;  // out of memory
}

char* SysAllocString(const char* text) {
    if (text == nullptr) {
        return nullptr;
    }
    const size_t size = std::strlen(text) + 1;
    auto* copy = static_cast<char*>(::operator new(size, std::nothrow));
    if (copy != nullptr) {
        std::memcpy(copy, text, size);
    }
    return copy;
}

int SysFreeString(void* p) {
    ::operator delete(p);
    return 0;
}

int IsEqualGUID(GUID a, GUID b) {
    static_assert(std::has_unique_object_representations_v<GUID>);
    return std::memcmp(&a, &b, sizeof a) == 0 ? 1 : 0;
}
