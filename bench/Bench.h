// What the benchmarks share: how they end early, and where their files go.
#pragma once

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>

[[noreturn]] inline void Fail(const std::string& reason) {
    std::fprintf(stderr, "%s: %s\n", BENCH_NAME, reason.c_str());
    std::exit(1);
}

// A path of this process in $TMPDIR, else /tmp.
inline std::string Path(const char* name) {
    const char* folder = std::getenv("TMPDIR");
    return std::string(folder != nullptr ? folder : "/tmp") + "/" BENCH_NAME "." +
           std::to_string(getpid()) + "." + name;
}
