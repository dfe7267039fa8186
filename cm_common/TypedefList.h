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

// The kind of data that a folder is for (CCommonUtility::GetDataFolderBase).
using MANAGEMENT_DATA_TYPE = uint32_t;
enum : MANAGEMENT_DATA_TYPE {
    MANAGEMENT_DATA_DB_SETTING = 0,
    MANAGEMENT_DATA_SYSTEM_SETTING = 1,  // the user's copy
    MANAGEMENT_DATA_LOCAL_2 = 2,
    MANAGEMENT_DATA_UNIT_COST = 3,
    MANAGEMENT_DATA_PRINTER_LIST = 4,
    MANAGEMENT_DATA_PRINTER_CAPS = 5,
    MANAGEMENT_DATA_LAST_GET_LOG = 6,  // and the logs of connections
    MANAGEMENT_DATA_LOG = 7,           // of errors and actions
    MANAGEMENT_DATA_JOBLOG_DB = 8,
    MANAGEMENT_DATA_SCHEDULED_EXPORT = 9,
    MANAGEMENT_DATA_MACHINE = 10,  // of all users
    MANAGEMENT_DATA_11 = 11,
    MANAGEMENT_DATA_PIPE = 12,
};
