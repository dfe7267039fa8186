// What the fuzzers share.
#pragma once

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

// An input for which it does not hold is a find.
inline void Check(bool condition, int line = __builtin_LINE()) {
    if (!condition) {
        std::fprintf(stderr, "ERROR: the check of line %d failed\n", line);
        std::abort();
    }
}

inline std::string TextOf(const uint8_t* data, size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}

// The application in the build tree, beside the folder of the fuzzers.
inline std::string ApplicationContents() {
    const auto program = std::filesystem::read_symlink("/proc/self/exe");
    return program.parent_path().parent_path() / "Tallyquist.app/Contents";
}
