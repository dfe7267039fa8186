#include <cerrno>
#include <cstdio>

#include "compatible/osFree.h"

int u_fopen(FILE** fp, const char* path, const char* mode) {
    if (fp == nullptr) {
        return EINVAL;
    }
    *fp = nullptr;
    if (path == nullptr || mode == nullptr) {
        return EINVAL;
    }
    char plainMode[4 + 1] = {};
    size_t length = 0;
    for (; *mode != '\0' && *mode != ',' && length < sizeof plainMode - 1; ++mode) {
        if (*mode != ' ') {
            plainMode[length++] = *mode;
        }
    }
    *fp = std::fopen(path, plainMode);
    return *fp != nullptr ? 0 : errno;
}
