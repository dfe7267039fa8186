#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <exception>
#include <string>

#include "compatible/osFree.h"

namespace {

bool Look(const char* path, struct stat* status) {
    return path != nullptr && stat(path, status) == 0;
}

// Tries before it looks, so that another program may create the same folder at the same time.
bool CreateLevel(const char* path) {
    return mkdir(path, 0755) == 0 || PathIsDirectory(path);
}

}  // namespace

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

bool CreateFolder(const char* path) try {
    if (path == nullptr) {
        return false;
    }
    std::string folder = path;
    std::replace(folder.begin(), folder.end(), '\\', '/');
    // Not at 0: the folder above a leading slash has no name.
    for (size_t at = 1; (at = folder.find('/', at)) != std::string::npos; ++at) {
        folder[at] = '\0';
        if (!CreateLevel(folder.c_str())) {
            return false;
        }
        folder[at] = '/';
    }
    return CreateLevel(folder.c_str());
} catch (const std::exception&) {
    return false;  // out of memory
}

int SHCreateDirectory(void* /*window*/, const char* path) {
    return CreateFolder(path) ? 0 : -1;
}

bool IsFileExist(const char* path, bool* isDirectory) {
    struct stat status {};
    const bool exists = Look(path, &status);
    if (isDirectory != nullptr) {
        *isDirectory = exists && S_ISDIR(status.st_mode);
    }
    return exists;
}

bool PathFileExists(const char* path) {
    return IsFileExist(path, nullptr);
}

bool PathIsDirectory(const char* path) {
    bool isDirectory = false;
    return IsFileExist(path, &isDirectory) && isDirectory;
}

long long GetFileSize(const char* path) {
    struct stat status {};
    return Look(path, &status) && S_ISREG(status.st_mode) ? status.st_size : 0;
}

void MakeUniqueFileName(std::string* out, const char* base, int tag) try {
    static unsigned long numCounter = 0;
    if (out == nullptr) {
        return;
    }
    std::string prefix = base != nullptr ? base : "";
    prefix.append("_").append(std::to_string(GetCurrentProcessId()));
    if (tag >= 0) {
        prefix.append("_").append(std::to_string(tag));
    }
    prefix += '_';
    std::string name;
    do {
        name = prefix + std::to_string(++numCounter);
    } while (access(name.c_str(), F_OK) == 0);
    out->swap(name);
} catch (const std::exception&) {
    return;  // out of memory
}
