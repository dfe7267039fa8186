// An application-logger plug-in that remembers what it was given. The fixture is built in two
// forms: complete (RECORDING_LOGGER) and without its entry (ENTRYLESS_LOGGER); both paths are
// compile definitions of every test.
#pragma once

#include <string>
#include <vector>

#include "CostCountCommon/CMLibLogger.h"

struct RecordedLine {
    std::string file;
    unsigned int line;
    char level;
    unsigned int code;
    std::string message;

    bool operator==(const RecordedLine&) const = default;
};

struct RecordedCall {
    RecordedLine line;
    LibLoggerSettings settings;
    std::string moduleName;
    bool moduleNameIsTheRecords;  // the same text in memory, not only the same letters
    std::string reserved;
    int level;
};

// What the plug-in was given since it was loaded or last asked. Loads it when necessary.
std::vector<RecordedCall> TakeRecordedCalls();
std::vector<RecordedLine> TakeRecordedLines();
