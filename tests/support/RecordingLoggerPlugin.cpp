// The code of the recording logger. Built with WITHOUT_ENTRY it lacks the entry a logger must have.
#include <utility>

#include "tests/support/RecordingLogger.h"

namespace {

std::vector<RecordedCall>& Calls() {
    static std::vector<RecordedCall> calls;
    return calls;
}

}  // namespace

#pragma GCC visibility push(default)

#ifndef WITHOUT_ENTRY
extern "C" int alWrite(const char* file, unsigned int line, LibLoggerSettings* settings,
                       const char* moduleName, const char* reserved, unsigned int code, int level,
                       const char* message) {
    Calls().push_back({{file, line, static_cast<char>(level), code, message},
                       *settings,
                       moduleName,
                       moduleName == settings->m_moduleName,
                       reserved,
                       level});
    return 4711;
}
#endif

extern "C" void takeRecordedCalls(std::vector<RecordedCall>* calls) {
    *calls = std::exchange(Calls(), {});
}

#pragma GCC visibility pop
