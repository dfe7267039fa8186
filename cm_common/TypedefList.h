// Types that all components share.
#pragma once

#include <cstdint>

// A globally unique identifier in its binary parts (RFC 4122 names them time_low, time_mid,
// time_hi_and_version, and the rest).
struct GUID {
    uint32_t Data1;
    uint16_t Data2;
    uint16_t Data3;
    uint8_t Data4[8];
};

// What is known of a started process. Only the process identifier is filled in here.
struct PROCESS_INFORMATION {
    void* hProcess;
    void* hThread;
    uint32_t dwProcessId;
    uint32_t dwThreadId;
};
