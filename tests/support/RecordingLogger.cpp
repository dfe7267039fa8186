#include "tests/support/RecordingLogger.h"

#include <stdexcept>

#include "compatible/osFree.h"

std::vector<RecordedCall> TakeRecordedCalls() {
    void* module = LoadLibrary(RECORDING_LOGGER);
    const auto take = reinterpret_cast<void (*)(std::vector<RecordedCall>*)>(
        GetProcAddress(module, "takeRecordedCalls"));
    if (take == nullptr) {
        throw std::runtime_error("the recording logger cannot be loaded: " RECORDING_LOGGER);
    }
    std::vector<RecordedCall> calls;
    take(&calls);
    FreeLibrary(module);
    return calls;
}

std::vector<RecordedLine> TakeRecordedLines() {
    std::vector<RecordedLine> lines;
    for (const RecordedCall& call : TakeRecordedCalls()) {
        lines.push_back(call.line);
    }
    return lines;
}
